// The bar at the top and the editor: opening, saving, deleting, choosing.
#include "tests/support/panel_rig.hpp"
#include "tests/support/scratch.hpp"
#include "ui/fixed_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <ctime>
#include <thread>

namespace
{

using namespace rig;
using vimbo::has_flag;

// So many bytes, in lines.
std::string lines(std::size_t bytes)
{
    std::string text(bytes, 'x');
    for (std::size_t at = 99; at < bytes; at += 100)
        text[at] = '\n';
    return text;
}

class TrayBar : public testing::Test
{
protected:
    TrayBar()
    {
        sources = place.file("src");
        std::filesystem::create_directories(sources);
        panels.app().bar.source_directory = sources.c_str();
        vimbo::initialise_panels(panels.app());
    }

    std::string source(const std::string &name) const
    {
        return sources + '/' + name;
    }

    void pick(std::string_view label, std::string_view item)
    {
        panels.click(label);
        panels.click(item);
    }

    std::string text()
    {
        return panels.app().editor.source_text;
    }

    std::string open_path()
    {
        return panels.app().bar.source_path;
    }

    bool flagged(std::uint32_t bit)
    {
        return has_flag(panels.app().frame.ui_flags, bit);
    }

    bool asks_for_the_mosaic()
    {
        return has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::reload_mosaic);
    }

    const scratch_directory place;
    std::string sources;
    panel_rig panels;
};

TEST_F(TrayBar, StartsWithNothingOpen)
{
    panels.frame();
    EXPECT_TRUE(panels.find("--"));
    EXPECT_TRUE(panels.find("X"));
    EXPECT_TRUE(panels.find("+"));
    EXPECT_TRUE(panels.find("0"));
    EXPECT_EQ(text(), "");
    EXPECT_EQ(open_path(), sources + "/--");
}

TEST_F(TrayBar, QuitsAtAPressOfX)
{
    panels.frame();
    const point at = *panels.find("X");
    panels.move(at);
    panels.frame();
    EXPECT_FALSE(has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::quit));
    panels.press(at);
    panels.frame();
    EXPECT_TRUE(has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::quit));
}

TEST_F(TrayBar, LabelsTheQuitButtonByItsFlagWhichIsKept)
{
    panels.app().frame.frame_flags = vimbo::frame_flag::return_label | vimbo::frame_flag::quit;
    panels.frame();
    EXPECT_TRUE(panels.find("↩"));
    EXPECT_FALSE(panels.find("X"));
    EXPECT_EQ(panels.app().frame.frame_flags, vimbo::frame_flag::return_label);
}

TEST_F(TrayBar, OpensThePickedSourceWithItsLineFeeds)
{
    write_file(source("a.txt"), "one\n\ttwo\nµm\n");
    pick("--", "a.txt");
    EXPECT_EQ(open_path(), source("a.txt"));
    panels.frame();
    EXPECT_TRUE(panels.find("a.txt"));
    EXPECT_EQ(std::string(panels.app().editor.load_buffer), "one\n\ttwo\nµm\n");
    EXPECT_EQ(text(), "one\n\ttwo\nµm") << "one byte more than characters, so one byte is cut";
}

TEST_F(TrayBar, ListsFilesOfTheWholeTreeButNoDirectories)
{
    write_file(source("a.txt"), "");
    write_file(source("deep/er/b.txt"), "b");
    panels.click("--");
    EXPECT_TRUE(panels.find("a.txt"));
    EXPECT_TRUE(panels.find("b.txt"));
    EXPECT_FALSE(panels.find("deep"));
    EXPECT_FALSE(panels.find("er"));
    panels.click("b.txt");
    EXPECT_EQ(open_path(), source("deep/er/b.txt"));
}

TEST_F(TrayBar, DoesNotReadTheOpenFileAgain)
{
    write_file(source("a.txt"), "before");
    pick("--", "a.txt");
    write_file(source("a.txt"), "behind");
    panels.click("a.txt");
    panels.click("a.txt", 1);
    EXPECT_EQ(text(), "before");
}

TEST_F(TrayBar, BringsBackTheFormerFileWhenThePickedOneCannotBeOpened)
{
    write_file(source("a.txt"), "text of a");
    pick("--", "a.txt");
    vimbo::open_source(panels.app().bar, panels.app().editor, source("gone.txt").c_str());
    panels.frame();
    EXPECT_EQ(open_path(), source("gone.txt"));
    EXPECT_EQ(text(), "text of a");
}

TEST_F(TrayBar, TakesASourceUpToItsFirstZeroByte)
{
    write_file(source("a.txt"), std::string("ab\0cd", 5));
    pick("--", "a.txt");
    EXPECT_EQ(text(), "ab");
}

TEST_F(TrayBar, CutsASourceAt65536Bytes)
{
    for (const std::size_t size : {65535, 65536, 65537, 200000}) {
        const std::string name = std::to_string(size);
        write_file(source(name), lines(size));
        vimbo::open_source(panels.app().bar, panels.app().editor, source(name).c_str());
        panels.frame();
        EXPECT_EQ(text().size(), std::min<std::size_t>(size, 65536)) << size;
    }
}

TEST_F(TrayBar, DoesNotTakeAPathOfMoreThan259Bytes)
{
    const std::string name(50, 'f');
    const std::size_t rest = 259 - sources.size() - 2 - name.size();
    const std::string longest = source(std::string(rest, 'd')) + '/' + name;
    ASSERT_EQ(longest.size(), 259U);
    write_file(longest, "fits");
    pick("--", name);
    EXPECT_EQ(open_path(), longest);
    write_file(longest + 'g', "does not");
    pick(name, name + 'g');
    EXPECT_EQ(open_path(), longest);
}

TEST_F(TrayBar, SavesUnderATypedNameInTheOpenFilesFolder)
{
    write_file(source("sub/a.txt"), "the text");
    pick("--", "a.txt");
    panels.click("+");
    EXPECT_TRUE(flagged(vimbo::ui_flag::save_as_mode));
    panels.frame();
    EXPECT_FALSE(panels.find("+"));
    EXPECT_TRUE(panels.find("!"));
    panels.click("a.txt");
    panels.key(NK_KEY_TEXT_LINE_END);
    panels.frame();
    panels.type("2");
    panels.frame();
    panels.key(NK_KEY_ENTER);
    panels.frame();
    EXPECT_FALSE(flagged(vimbo::ui_flag::save_as_mode));
    EXPECT_EQ(open_path(), source("sub/a.txt2"));
    EXPECT_EQ(read_file(source("sub/a.txt2")), "the text");
    EXPECT_EQ(read_file(source("sub/a.txt")), "the text");
}

TEST_F(TrayBar, KeepsTypedSeparatorsWithinItsBuffer)
{
    // Each of them moves the name's part on, toward the buffer's end.
    vimbo::tray_bar_state &bar = panels.app().bar;
    vimbo::set_text(bar.source_path, '/' + std::string(sizeof bar.source_path - 300, 'd') + "/a");
    constexpr std::int64_t behind_the_path = 0x4242424242424242;
    bar.delete_armed_at = behind_the_path;
    panels.click("+");
    panels.frame();
    panels.click("a");
    for (int i = 0; i < 40; ++i) {
        panels.type("/nine more");
        panels.frame();
    }
    EXPECT_LT(strnlen(bar.source_path, sizeof bar.source_path), sizeof bar.source_path)
        << "the path has no end";
    EXPECT_EQ(bar.delete_armed_at, behind_the_path) << "what lies behind it was written over";
}

TEST_F(TrayBar, ChangesNothingWhenSaveAsIsLeft)
{
    write_file(source("a.txt"), "the text");
    pick("--", "a.txt");
    panels.click("+");
    panels.click("!");
    EXPECT_FALSE(flagged(vimbo::ui_flag::save_as_mode));
    EXPECT_FALSE(flagged(vimbo::ui_flag::delete_armed));
    EXPECT_EQ(open_path(), source("a.txt"));
}

TEST_F(TrayBar, ReportsThatItCouldNotSave)
{
    write_file(source("a.txt"), "the text");
    pick("--", "a.txt");
    std::filesystem::remove_all(sources);
    panels.click("+");
    panels.click("a.txt");
    testing::internal::CaptureStderr();
    panels.key(NK_KEY_ENTER);
    panels.frame();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: unable to save.\n");
    EXPECT_FALSE(flagged(vimbo::ui_flag::save_as_mode));
    EXPECT_EQ(text(), "the text");
    EXPECT_EQ(open_path(), source("a.txt"));
}

TEST_F(TrayBar, DeletesAtTheSecondPress)
{
    write_file(source("a.txt"), "the text");
    pick("--", "a.txt");
    panels.click("-");
    EXPECT_TRUE(flagged(vimbo::ui_flag::delete_armed));
    EXPECT_TRUE(std::filesystem::exists(source("a.txt")));
    panels.click("!");
    EXPECT_FALSE(std::filesystem::exists(source("a.txt")));
    EXPECT_FALSE(flagged(vimbo::ui_flag::delete_armed));
    EXPECT_EQ(open_path(), "-");
    EXPECT_EQ(text(), "the text") << "the text stays in the editor";
}

TEST_F(TrayBar, ShowsNoNameAfterADeletion)
{
    write_file(source("a.txt"), "the text");
    pick("--", "a.txt");
    panels.frame();
    ASSERT_TRUE(panels.find("a.txt"));
    panels.click("-");
    panels.click("!");
    panels.frame();
    EXPECT_FALSE(panels.find("a.txt"));
    EXPECT_FALSE(panels.find("--"));
}

TEST_F(TrayBar, StaysArmedForThreeWholeSecondsAndNoLonger)
{
    vimbo::frame_state &frame = panels.app().frame;
    vimbo::tray_bar_state &bar = panels.app().bar;
    vimbo::press_delete(frame, bar, 1000);
    vimbo::lapse_delete(frame, bar, 1003);
    EXPECT_TRUE(flagged(vimbo::ui_flag::delete_armed));
    vimbo::lapse_delete(frame, bar, 1004);
    EXPECT_FALSE(flagged(vimbo::ui_flag::delete_armed));
}

TEST_F(TrayBar, ArmsAnewAfterItsLapse)
{
    write_file(source("a.txt"), "the text");
    pick("--", "a.txt");
    panels.click("-");
    panels.app().bar.delete_armed_at = std::time(nullptr) - 4;
    panels.frame();
    EXPECT_FALSE(panels.find("!"));
    panels.click("-");
    EXPECT_TRUE(flagged(vimbo::ui_flag::delete_armed));
    EXPECT_TRUE(std::filesystem::exists(source("a.txt")));
}

TEST_F(TrayBar, ForgetsTheFileThoughItCouldNotBeRemoved)
{
    vimbo::frame_state &frame = panels.app().frame;
    vimbo::press_delete(frame, panels.app().bar, 1000);
    vimbo::press_delete(frame, panels.app().bar, 1001);
    EXPECT_EQ(open_path(), "-");
    EXPECT_FALSE(flagged(vimbo::ui_flag::delete_armed));
}

TEST_F(TrayBar, ListsTheDirectoriesBesideTheTray)
{
    for (const char *name : {"trays/one/_mosaics", "trays/two"})
        std::filesystem::create_directories(place.file(name));
    write_file(place.file("trays/file"), "");
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, place.file("trays/one").c_str());
    panels.click("one");
    EXPECT_TRUE(panels.find("two"));
    EXPECT_TRUE(panels.find("_mosaics"));
    EXPECT_FALSE(panels.find("file"));
    EXPECT_FALSE(panels.find("trays"));
    panels.click("two");
    EXPECT_EQ(panels.app().mosaic.tray_directory, place.file("trays/two"));
    EXPECT_EQ(panels.app().mosaic.mosaic_path, place.file("trays/two") + "/_mosaics/0.mmv");
}

TEST_F(TrayBar, ListsEveryDirectoryUnderTheWorkingOneByDefault)
{
    for (const char *name : {"here/one/_mosaics", "here/two"})
        std::filesystem::create_directories(place.file(name));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(place.file("here"));
    panels.frame();
    // The tray's picker has no name on it; its list opens from its arrow's left.
    const point chooser = *panels.find("0");
    panels.click({chooser.x - 60, chooser.y});
    for (const char *listed : {"one", "_mosaics", "two"})
        EXPECT_TRUE(panels.find(listed)) << listed;
    for (const char *left_out : {".", "./", "here"})
        EXPECT_FALSE(panels.find(left_out)) << left_out;
    std::filesystem::current_path(before);
}

TEST_F(TrayBar, RequestsAReloadForAnotherTrayButNotForTheSame)
{
    vimbo::frame_state &frame = panels.app().frame;
    vimbo::choose_tray(frame, panels.app().mosaic, "./");
    EXPECT_FALSE(asks_for_the_mosaic());
    vimbo::choose_tray(frame, panels.app().mosaic, "./other");
    EXPECT_TRUE(asks_for_the_mosaic());
    EXPECT_STREQ(panels.app().mosaic.mosaic_path, "./other/_mosaics/0.mmv");
}

TEST_F(TrayBar, TakesATrayOf255BytesAndNoLongerOne)
{
    const std::string longest(255, 't');
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, longest.c_str());
    EXPECT_EQ(panels.app().mosaic.tray_directory, longest);
    EXPECT_EQ(panels.app().mosaic.mosaic_path, longest + "/_mosaics/0.mmv");
    panels.app().frame.frame_flags = 0;
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, std::string(256, 'u').c_str());
    EXPECT_EQ(panels.app().mosaic.tray_directory, longest);
    EXPECT_FALSE(asks_for_the_mosaic());
}

TEST_F(TrayBar, ChoosesEachOfEightMosaics)
{
    panels.click("0");
    for (const char *name : {"1", "2", "3", "4", "5", "6", "7"})
        EXPECT_TRUE(panels.find(name)) << name;
    EXPECT_FALSE(panels.find("8"));
    const point at = *panels.find("7");
    panels.move(at);
    panels.frame();
    panels.press(at);
    panels.frame();
    panels.release(at);
    bool asked = asks_for_the_mosaic();
    panels.frame();
    asked = asked || asks_for_the_mosaic();
    EXPECT_TRUE(asked);
    EXPECT_EQ(panels.app().mosaic.mosaic_index, 7);
    EXPECT_STREQ(panels.app().mosaic.mosaic_path, ".//_mosaics/7.mmv");
    panels.frame();
    EXPECT_FALSE(asks_for_the_mosaic()) << "the request lives for one frame";
}

class Editor : public TrayBar
{
protected:
    void open(const std::string &content)
    {
        write_file(source("a.txt"), content);
        vimbo::open_source(panels.app().bar, panels.app().editor, source("a.txt").c_str());
        panels.frame();
        const point toggle = *panels.find("|");
        panels.click({toggle.x / 2, toggle.y});
        panels.key(NK_KEY_TEXT_END);
        panels.frame();
    }

    void type(const std::string &typed)
    {
        panels.type(typed);
        panels.frame();
    }
};

TEST_F(Editor, TakesWhatIsTyped)
{
    open("one\n");
    type("two");
    panels.key(NK_KEY_ENTER);
    panels.frame();
    type("x");
    EXPECT_EQ(text(), "one\ntwo\nx");
}

TEST_F(Editor, CutsAsManyBytesAsATextHasMoreThanCharacters)
{
    open("");
    type("abcdé");
    EXPECT_EQ(text(), "abcd\xc3") << "five characters of six bytes: five bytes are left";
    type("é");
    EXPECT_EQ(text(), "abcdé");
    type("x");
    EXPECT_EQ(text(), "abcdé\xc3");
}

TEST_F(Editor, KeepsTheWholeOfSuchATextWhileTypingGoesOn)
{
    open("µµµµ");
    EXPECT_EQ(text(), "µµ");
    for (int i = 0; i < 5; ++i)
        panels.frame();
    panels.key(NK_KEY_TEXT_END);
    panels.frame();
    type("abcd");
    EXPECT_EQ(text(), "µµµµ");
}

TEST_F(Editor, TakesNothingBeyond65536Bytes)
{
    open(lines(65535));
    type("yz");
    type("more");
    EXPECT_LE(text().size(), 65536U);
    EXPECT_EQ(text().substr(0, 65535), lines(65535));
}

TEST_F(Editor, ScrollsBesideADragByTheTimeThatPasses)
{
    // Longer than all steps together, and with next to nothing in it, so that frames are short
    // on a busy machine, too.
    open(std::string(1000, '\n'));
    panels.key(NK_KEY_TEXT_START);
    panels.frame();
    panels.press({100, 300});
    panels.frame();
    panels.move({100, 1300});
    const float &top = panels.app().editor.source_edit.scrollbar.y;
    // A tenth of a second counts at most; of many frames some take less.
    float least = 1e9F;
    float most = 0;
    for (int i = 0; i < 40; ++i) {
        const float before = top;
        if (i == 20)
            std::this_thread::sleep_for(std::chrono::milliseconds(120));
        panels.frame();
        if (top <= before)
            continue;
        least = std::min(least, top - before);
        most = std::max(most, top - before);
    }
    EXPECT_GT(most, 0);
    EXPECT_LT(least, most / 2) << "as far in each frame, however short";
}

TEST(TrayBarInANarrowWindow, KeepsItsListsWideEnoughToBeRead)
{
    constexpr float list_width = 256;
    constexpr float button_and_edges = 44;
    const scratch_directory place;
    const std::string sources = place.path().string();
    panel_rig panels(400, 600);
    panels.app().bar.source_directory = sources.c_str();
    vimbo::initialise_panels(panels.app());
    panels.frame();
    for (const drawn_text &text : panels.texts())
        if (text.text == "--") {
            EXPECT_EQ(text.bounds.w, list_width - button_and_edges);
            return;
        }
    FAIL() << "no list of sources is drawn";
}

} // namespace
