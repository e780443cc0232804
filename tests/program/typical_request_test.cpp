// The whole program from outside: real window, real pointer, real files, a stub
// in place of the evaluator.
#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/ui_driver.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

namespace
{

using namespace rig;

constexpr int width = 1600;
constexpr int height = 1240;
constexpr colour background = {110, 142, 190};
constexpr colour mark_colour = {255, 255, 255};
constexpr colour outline_colour = {217, 166, 115};

// Pixels of this colour on a line across the picture.
int count_along(const image &picture, const struct nk_rect &area, int x, colour wanted)
{
    int count = 0;
    for (int y = static_cast<int>(area.y); y < static_cast<int>(area.y + area.h); ++y)
        count += picture.at(x, y) == wanted ? 1 : 0;
    return count;
}

TEST(TypicalRequest, IntegratesTheEditedTextAndShowsTheMosaic)
{
    const scratch_directory place;
    const std::string square = mosaic_bytes({{-10000000, -10000000},
                                             {10000000, -9999999},
                                             {10000000, 10000001},
                                             {-10000000, 10000001},
                                             {-10000000, -9999999}});
    write_file(place.file("square.mmv"), square);
    write_file(place.file("src/a.txt"), "first line\nsecond line\n");
    std::filesystem::create_directory(place.file("tray"));
    write_script(place.file("bin/mero"), "echo \"$@\" >" + place.file("arguments") +
                                             "\ncp /tmp/vimbo " + place.file("text") + "\ncp " +
                                             place.file("square.mmv") + " \"$4\"\n");

    x_server screen(width, height);
    program vimbo({.arguments = {VIMBO_PROGRAM, "-s", place.file("src"), "-t", place.file("tray"),
                                 "-w", "1600,1240"},
                   .environment = {"DISPLAY=" + screen.name(),
                                   "PATH=" + place.file("bin") + ":/usr/bin:/bin"},
                   .directory = {},
                   .output = place.file("output")});
    const unsigned long window = wait_for_window(screen);
    ui_driver driver(screen, {width, height, place.file("src"), place.file("tray")});
    driver.show_bottom();
    driver.show_preview();
    driver.choose("--", "a.txt");
    driver.screen().click(driver.editor());
    driver.screen().type(U"Edited.");
    driver.press("Integrate");
    const std::string mosaic = place.file("tray/_mosaics/0.mmv");
    ASSERT_TRUE(wait_until([&] { return std::filesystem::exists(mosaic); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(700));

    EXPECT_EQ(read_file(place.file("arguments")), "-s 35.000000 /tmp//vimbo " + mosaic + "\n");
    EXPECT_EQ(read_file(place.file("text")), "first line\nsecond line\nEdited.");

    const struct nk_rect area = driver.picture();
    const image picture = screen.screenshot();
    const int middle = static_cast<int>(area.x + area.w / 2);
    EXPECT_EQ(picture.at(middle, static_cast<int>(area.y) + 5), background);
    EXPECT_EQ(count_along(picture, area, middle + 20, mark_colour), 2) << "bottom and top side";
    EXPECT_EQ(count_along(picture, area, middle + 20, outline_colour), 2) << "the tray's edges";

    screen.close_window(window);
    EXPECT_EQ(vimbo.wait_for_end(), 0);
    EXPECT_EQ(read_file(place.file("output")), "");
}

} // namespace
