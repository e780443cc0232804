// Sources of every kind and size, and what may stand in their place: the list and
// the editor go on, and what could not be opened changes as little as it can.
#include "tests/faults/fault_rig.hpp"
#include "tests/support/child_watch.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace
{

using namespace rig;

// So many bytes, in lines.
std::string lines(std::size_t bytes)
{
    std::string all(bytes, 'x');
    for (std::size_t at = 99; at < bytes; at += 100)
        all[at] = '\n';
    return all;
}

class FaultySource : public FaultRig
{
protected:
    std::string source(const std::string &name) const
    {
        return sources + '/' + name;
    }

    std::string open_name() const
    {
        return std::filesystem::path(open_path()).filename().string();
    }

    void open_list()
    {
        panels.click(open_name());
        panels.frame();
    }

    // Opens it as the operator does.
    void pick(const std::string &name)
    {
        open_list();
        // The bar's own label comes first.
        panels.click(name, name == open_name() ? 1 : 0);
        panels.frame();
    }

    bool listed(const std::string &name)
    {
        return panels.find(name, name == open_name() ? 1 : 0).has_value();
    }

    void pick_and_expect(const std::string &name, const std::string &wanted)
    {
        pick(name);
        text = wanted;
        open_file = source(name);
        expect_as_before();
    }

    // Each of the editor's own movements and changes once, and back again.
    void work_on_it()
    {
        panels.click(point{14, 52});
        for (const nk_keys key :
             {NK_KEY_TEXT_END, NK_KEY_LEFT, NK_KEY_UP, NK_KEY_TEXT_WORD_LEFT, NK_KEY_SCROLL_UP,
              NK_KEY_TEXT_LINE_END, NK_KEY_BACKSPACE, NK_KEY_TEXT_START, NK_KEY_DEL, NK_KEY_DOWN,
              NK_KEY_TEXT_SELECT_ALL, NK_KEY_COPY, NK_KEY_TEXT_END, NK_KEY_ENTER}) {
            panels.key(key);
            panels.frame();
            panels.frame();
        }
        panels.type("typed");
        panels.frame();
        for (int i = 0; i < 10; ++i) {
            panels.key(NK_KEY_TEXT_UNDO);
            panels.frame();
            panels.frame();
        }
    }
};

TEST_F(FaultySource, OfAnySizeIsReadAsFarAsItFits)
{
    for (const std::size_t size : {0, 1, 65535, 65536, 65537}) {
        const std::string name = "of " + std::to_string(size);
        write_file(source(name), lines(size));
        pick_and_expect(name, lines(std::min<std::size_t>(size, 65536)));
        EXPECT_EQ(read_file(source(name)), lines(size));
    }
}

TEST_F(FaultySource, OfAGigabyteIsReadAsFarAsItFits)
{
    write_file(source("big"), lines(100000));
    std::filesystem::resize_file(source("big"), 1 << 30);
    pick_and_expect("big", lines(65536));
    EXPECT_EQ(std::filesystem::file_size(source("big")), 1U << 30);
}

TEST_F(FaultySource, OfOneLongLineIsReadWhole)
{
    write_file(source("line"), std::string(65536, 'x'));
    pick_and_expect("line", std::string(65536, 'x'));
    panels.click(point{14, 52});
    for (const nk_keys key : {NK_KEY_TEXT_END, NK_KEY_LEFT, NK_KEY_BACKSPACE, NK_KEY_TEXT_UNDO}) {
        panels.key(key);
        panels.frame();
        panels.frame();
    }
    expect_as_before();
}

TEST_F(FaultySource, ThatIsBinaryIsShownUpToItsFirstZeroByte)
{
    write_file(source("program"), std::string("\x7f"
                                              "ELF\1\1\1\0\2\0>",
                                              11));
    pick_and_expect("program", "\x7f"
                               "ELF\1\1\1");
    work_on_it();
    expect_as_before();
}

TEST_F(FaultySource, OfInvalidUtf8CanBeEditedAndRestoredByUndo)
{
    std::string bytes;
    for (int round = 0; round < 20; ++round)
        for (int byte = 255; byte > 0; --byte)
            bytes += static_cast<char>(byte);
    const std::string cut_off[] = {"\xff",         "\xc3",     "\xf0\x9f\x98",
                                   "\xed\xa0\x80", "\x80\x80", bytes};
    for (std::size_t i = 0; i < std::size(cut_off); ++i) {
        const std::string name = "invalid" + std::to_string(i);
        write_file(source(name), cut_off[i]);
        pick(name);
        open_file = source(name);
        text = edited();
        EXPECT_TRUE(cut_off[i].starts_with(text)) << i;
        work_on_it();
        expect_as_before();
        EXPECT_EQ(read_file(source(name)), cut_off[i]) << "nothing saves it unasked";
    }
}

TEST_F(FaultySource, WithoutReadPermissionBringsBackTheTextOpenedBefore)
{
    ASSERT_EQ(chmod(place.path().c_str(), 0755), 0);
    write_file(source("secret"), "not for everybody");
    ASSERT_EQ(chmod(source("secret").c_str(), 0), 0);
    const without_privileges other;
    pick("secret");
    open_file = source("secret"); // it is the one that was picked
    expect_as_before();
}

TEST_F(FaultySource, ThatIsNoRegularFileIsNotListed)
{
    ASSERT_EQ(mkfifo(source("pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(source("directory"));
    std::filesystem::create_symlink("nowhere", source("dangling"));
    std::filesystem::create_symlink(".", source("directory/up"));
    write_file(source("directory/b.txt"), "text of b");
    std::filesystem::create_symlink("../directory", source("directory/around"));
    open_list();
    for (const char *name : {"pipe", "directory", "dangling", "up", "around"})
        EXPECT_FALSE(listed(name)) << name;
    EXPECT_TRUE(listed("b.txt"));
    EXPECT_FALSE(panels.find("b.txt", 1)) << "once, though links lead round in a circle";
    expect_as_before();
}

TEST_F(FaultySource, ThatIsALoopOfLinksIsNotListed)
{
    std::filesystem::create_symlink("loop2", source("loop1"));
    std::filesystem::create_symlink("loop1", source("loop2"));
    write_file(source("sub/b.txt"), "text of b");
    open_list();
    EXPECT_FALSE(listed("loop1"));
    EXPECT_FALSE(listed("loop2"));
    EXPECT_TRUE(listed("a.txt"));
    EXPECT_TRUE(listed("b.txt"));
    expect_as_before();
    vimbo::open_source(panels.app().bar, panels.app().editor, source("loop1").c_str());
    panels.frame();
    open_file = source("loop1");
    expect_as_before();
}

TEST_F(FaultySource, ThatCannotBeReachedIsNotListed)
{
    ASSERT_EQ(chmod(place.path().c_str(), 0755), 0);
    for (const char *directory : {"unreadable", "unreachable"})
        write_file(source(directory) + "/" + directory + ".txt", "");
    ASSERT_EQ(chmod(source("unreadable").c_str(), 0), 0);
    ASSERT_EQ(chmod(source("unreachable").c_str(), 0744), 0);
    const without_privileges other;
    open_list();
    EXPECT_FALSE(listed("unreadable.txt"));
    EXPECT_FALSE(listed("unreachable.txt"));
    EXPECT_TRUE(listed("a.txt"));
    expect_as_before();
}

TEST_F(FaultySource, AmongTwentyThousandIsFoundAndOpened)
{
    for (int i = 0; i < 20000; ++i)
        write_file(source("many/f" + std::to_string(i)), "");
    open_list();
    std::string first;
    for (const drawn_text &entry : panels.texts())
        if (entry.text.size() > 1 && entry.text[0] == 'f' && first.empty())
            first = entry.text;
    ASSERT_NE(first, "");
    write_file(source("many/" + first), "the one that was picked");
    panels.click(first);
    text = "the one that was picked";
    open_file = source("many/" + first);
    expect_as_before();
}

TEST_F(FaultySource, WithTooLongAPathIsNotOpened)
{
    const std::string name(20, 'n');
    for (const std::size_t length : {259, 260, 261, 4000}) {
        std::string path = sources;
        const std::size_t parents = length - name.size() - 1;
        while (path.size() < parents) {
            std::size_t part = std::min<std::size_t>(parents - path.size() - 1, 200);
            // What is left has to be a name as well.
            part -= parents - path.size() - 1 - part == 1 ? 1 : 0;
            path += '/' + std::string(part, 'd');
        }
        path += '/' + name.substr(0, 16) + std::to_string(1000 + length % 1000);
        ASSERT_EQ(path.size(), length);
        write_file(path, "deep down");
        pick(std::filesystem::path(path).filename().string());
        if (length < 260) {
            text = "deep down";
            open_file = path;
        }
        expect_as_before();
        std::filesystem::remove_all(sources + "/" + std::string(200, 'd'));
        panels.frame();
    }
}

TEST_F(FaultySource, WithAnyCharacterInItsNameIsOpenedSavedAndDeleted)
{
    const char *names[] = {"with blanks in it", "'single' and \"double\" quotes",
                           "$(touch gone); `ls` & *", "-r", "\xff\xfe"};
    for (const std::string name : names) {
        write_file(source(name), "text of " + name);
        pick_and_expect(name, "text of " + name);
        if (name[0] == '\xff')
            continue; // nothing that can be typed
        EXPECT_EQ(save_as(name + "2"), "");
        EXPECT_EQ(read_file(source(name + "2")), "text of " + name);
        open_file = source(name + "2");
        expect_as_before();
        panels.click("-");
        panels.click("!");
        EXPECT_FALSE(std::filesystem::exists(source(name + "2")));
        open_file = "-";
        expect_as_before();
        write_file(source("a.txt"), "the text");
        vimbo::open_source(panels.app().bar, panels.app().editor, source("a.txt").c_str());
    }
}

TEST_F(FaultySource, WithALineFeedInItsNameIsOpenedAndDeleted)
{
    const std::string name = "two\nlines";
    write_file(source(name), "text of it");
    pick_and_expect(name, "text of it");
    panels.click("-");
    panels.click("!");
    EXPECT_FALSE(std::filesystem::exists(source(name)));
    open_file = "-";
    expect_as_before();
}

TEST_F(FaultySource, ThatVanishedFromTheOpenListIsNotOpened)
{
    write_file(source("gone"), "");
    open_list();
    const std::optional<point> at = panels.find("gone");
    ASSERT_TRUE(at);
    // The list's one entry stands where the other did, or nothing does.
    std::filesystem::remove(source("gone"));
    std::filesystem::remove(source("a.txt"));
    panels.click(*at);
    panels.frame();
    expect_as_before();
}

TEST_F(FaultySource, ThatVanishesUnderTheClickBringsBackTheTextOpenedBefore)
{
    write_file(source("gone"), "too late");
    before_open = [this] { std::filesystem::remove(source("gone")); };
    pick("gone");
    before_open = nullptr;
    EXPECT_FALSE(std::filesystem::exists(source("gone")));
    open_file = source("gone"); // it is the one that was picked
    expect_as_before();
}

TEST_F(FaultySource, InADirectoryThatVanishedLeavesAnEmptyList)
{
    std::filesystem::remove_all(sources);
    open_list();
    EXPECT_FALSE(listed("a.txt"));
    expect_as_before();
}

class TrayName : public FaultRig
{
protected:
    // What the tools are told of this tray's mosaic.
    void expect_passed_on(const std::string &name)
    {
        choose(name);
        tools.put("mero", "exit 3");
        tools.put("plimb", "exit 3");
        EXPECT_EQ(run_and_complaint("Integrate"), "");
        EXPECT_EQ(run_and_complaint("↻"), "");
        const std::string path = tray + "/_mosaics/0.mmv\n";
        EXPECT_EQ(tools.arguments_of("mero"), "-s\n35.000000\n/tmp//vimbo\n" + path);
        EXPECT_EQ(tools.arguments_of("plimb"), path);
        EXPECT_TRUE(std::filesystem::is_directory(tray + "/_mosaics"));
        expect_as_before();
    }

    void choose(const std::string &name)
    {
        tray = place.file(name);
        std::filesystem::create_directory(tray);
        vimbo::choose_tray(panels.app().frame, panels.app().mosaic, tray.c_str());
    }
};

TEST_F(TrayName, WithBlanksSingleQuotesAndLineFeedsReachesTheToolsUnchanged)
{
    for (const char *name : {"two  blanks ", "a 'quoted' one", "it's", "a; b & c | d > e * ?",
                             "two\nlines", "-s", "#", "~"})
        expect_passed_on(name);
}

TEST_F(TrayName, WithWhatAShellWouldExpandReachesTheToolsUnchanged)
{
    for (const char *name : {"a$HOME", "b`id`", "c$(id)", "${HOME}", "back\\slash", "\\", "\\$HOME",
                             "$", "!!", "\xff"})
        expect_passed_on(name);
}

TEST_F(TrayName, WithADoubleQuoteIsRefused)
{
    tools.put("plimb", "numbers 50 0.5");
    run("↻");
    std::filesystem::remove(tools.file("plimb.arguments"));
    for (const char *name : {"\"both\"", "o\"pen", "a\\\"; id"}) {
        choose(name);
        tools.put("mero", "exit 3");
        const std::string complaint = "error: the tray's path has a double quote.\n";
        EXPECT_EQ(run_and_complaint("Integrate"), complaint);
        EXPECT_STREQ(panels.app().evaluation.eval_text,
                     "Error: the tray's path has a double quote.\n");
        EXPECT_EQ(run_and_complaint("↻"), complaint);
        EXPECT_EQ(tools.arguments_of("mero") + tools.arguments_of("plimb"), "")
            << "one was started";
        EXPECT_EQ(panels.app().statistics.run.stats_locality[0], 0.5F);
        EXPECT_FALSE(std::filesystem::exists(tray + "/_mosaics"));
        expect_as_before();
    }
    EXPECT_EQ(run_and_complaint("Evaluate"), "") << "it is told of no tray";
    EXPECT_EQ(tools.arguments_of("mero"), "-S\n/tmp//vimbo\n");
}

TEST_F(TrayName, ThatIsAFileIsReportedByTheTool)
{
    tray = place.file("file");
    write_file(tray, "no directory");
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, tray.c_str());
    tools.put("mero", "exit 1");
    EXPECT_EQ(run_and_complaint("Integrate"), "");
    EXPECT_TRUE(std::string(panels.app().evaluation.eval_text).ends_with("Status: error.\n"));
    EXPECT_EQ(read_file(tray), "no directory");
    expect_as_before();
}

} // namespace
