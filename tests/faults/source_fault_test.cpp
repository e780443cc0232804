// Sources of every kind and size, and what may stand in their place: the list and
// the editor go on, and what could not be opened changes as little as it can.
#include "tests/faults/source_rig.hpp"

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

TEST_F(FaultySource, InADirectoryThatVanishedLeavesAnEmptyList)
{
    std::filesystem::remove_all(sources);
    open_list();
    EXPECT_FALSE(listed("a.txt"));
    expect_as_before();
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
