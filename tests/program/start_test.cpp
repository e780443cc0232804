// How the program starts, or refuses to, how it goes and how it ends.
#include "tests/program/program_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/program.hpp"

#include <algorithm>
#include <cmath>
#include <regex>

namespace
{

using namespace rig;

class Start : public ProgramRig
{
protected:
    static bool is_one_glfw_error(const std::string &printed)
    {
        return std::regex_match(printed, std::regex("glfw err [0-9]+: [^\n]+\n"));
    }
};

TEST_F(Start, AnswersAnUnknownOptionWithTheUsageBeforeAnyWindow)
{
    const ended_run run = run_to_end({VIMBO_PROGRAM, "-x"}, {"DISPLAY=:0-none"});
    EXPECT_EQ(run.exit_code, 255);
    EXPECT_EQ(run.printed, "");
    EXPECT_EQ(run.complaints,
              "Vimbo is mero's interface to korvat.\nusage: " VIMBO_PROGRAM
              " [-e tr_w,tr_h,tr_r] [-t tray_directory] [-s src directory] [-w wndw_w,wndw_h]\n"
              "\t-e\twidth,height,radius\t\tExtent of the tray (rounded rectangle form) [mm].\n"
              "\t-s\tpath\t\t\t\tPath of the sources' directory.\n"
              "\t-t\tpath\t\t\t\tPath to the tray.\n"
              "\t-w\twidth,height\t\t\tWindow size [px].\n");
}

TEST_F(Start, FailsInOneLineWithoutADisplay)
{
    const ended_run run = run_to_end({VIMBO_PROGRAM}, {"DISPLAY=:4999"});
    EXPECT_EQ(run.exit_code, 255);
    EXPECT_EQ(run.complaints, "GFLW failed to init!\n");
    EXPECT_TRUE(is_one_glfw_error(run.printed)) << run.printed;
}

TEST_F(Start, FailsInOneLineWithoutAWindow)
{
    const x_server display(640, 480);
    const ended_run run = run_to_end({VIMBO_PROGRAM, "-w", "0,0"}, {"DISPLAY=" + display.name()});
    EXPECT_EQ(run.exit_code, 255);
    EXPECT_EQ(run.complaints, "Failed to create the window\n");
    EXPECT_TRUE(is_one_glfw_error(run.printed)) << run.printed;
}

TEST_F(Start, FailsInOneLineWithASizeThatNoWindowCanHave)
{
    const x_server display(640, 480);
    for (const char *size : {"-5,30", "30,-5", "100000,100000", "32767,32767", "32767,10"}) {
        const ended_run run =
            run_to_end({VIMBO_PROGRAM, "-w", size}, {"DISPLAY=" + display.name()});
        EXPECT_EQ(run.exit_code, 255) << size;
        EXPECT_EQ(run.complaints, "Failed to create the window\n") << size;
        EXPECT_EQ(run.printed, "") << size << " is not even asked for";
    }
}

TEST_F(Start, FailsInOneLineWithoutOpenGL33)
{
    const x_server display(640, 480);
    const ended_run run =
        run_to_end({VIMBO_PROGRAM}, {"DISPLAY=" + display.name(), "MESA_GL_VERSION_OVERRIDE=3.1"});
    EXPECT_EQ(run.exit_code, 255);
    EXPECT_EQ(run.complaints, "Failed to create the window\n");
    EXPECT_TRUE(is_one_glfw_error(run.printed)) << run.printed;
}

TEST_F(Start, GoesOnWithoutItsFont)
{
    std::filesystem::create_directories(place.file("elsewhere/bin"));
    std::filesystem::copy_file(VIMBO_PROGRAM, place.file("elsewhere/bin/vimbo"));
    x_server display(800, 600);
    program run({.arguments = {place.file("elsewhere/bin/vimbo"), "-w", "800,600"},
                 .environment = {"DISPLAY=" + display.name()},
                 .directory = place.path().string(),
                 .output = place.file("output"),
                 .errors = place.file("errors")});
    display.close_window(wait_for_window(display));
    EXPECT_EQ(run.wait_for_end(), 0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(complaints(),
              "no font at ../share/pellor/common/fonts/iosevka-regular.ttf: using the "
              "built-in one\n");
}

TEST_F(Start, FindsItsFontFromItsWorkingDirectory)
{
    const std::filesystem::path bin = std::filesystem::path(VIMBO_PROGRAM).parent_path();
    std::filesystem::create_directories(place.file("elsewhere/bin"));
    std::filesystem::copy_file(VIMBO_PROGRAM, place.file("elsewhere/bin/vimbo"));
    x_server display(800, 600);
    program run({.arguments = {place.file("elsewhere/bin/vimbo"), "-w", "800,600"},
                 .environment = {"DISPLAY=" + display.name()},
                 .directory = bin.string(),
                 .output = place.file("output"),
                 .errors = place.file("errors")});
    display.close_window(wait_for_window(display));
    EXPECT_EQ(run.wait_for_end(), 0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(complaints(), "") << "a font that is not found is reported";
}

TEST_F(Start, OpensAWindowOfTheLastSizeGiven)
{
    start({.width = 900, .height = 700, .more = {"-w", "640,480"}});
    const image all = screen->screenshot();
    constexpr colour nothing = {0, 0, 0};
    EXPECT_NE(all.at(639, 479), nothing);
    EXPECT_EQ(all.at(641, 200), nothing);
    EXPECT_EQ(all.at(200, 481), nothing);
    expect_good_end();
}

TEST_F(Start, DrawsAboutThirtyFramesASecondWhenIdle)
{
    start({.width = 400, .height = 300});
    // On a busy machine a second sees fewer; one that is little disturbed will do.
    int most = 0;
    for (int second = 0; second < 40 && most < 26; ++second)
        most = std::max(most, screen->count_redraws(window, std::chrono::seconds(1)));
    EXPECT_GE(most, 18);
    EXPECT_LE(most, 34);
    expect_good_end();
}

TEST_F(Start, EndsWithStatusZeroWhenItsWindowIsClosed)
{
    start({.width = 800, .height = 600});
    screen->close_window(window);
    EXPECT_EQ(vimbo->wait_for_end(), 0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(complaints(), "");
}

TEST_F(Start, EndsAtThePressOfItsQuitButton)
{
    start({.width = 800, .height = 600});
    const point at = driver->place_of("X");
    screen->move(at);
    screen->settle();
    screen->press();
    EXPECT_EQ(vimbo->wait_for_end(), 0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(complaints(), "");
}

TEST_F(Start, EndsWithoutWaitingForItsTools)
{
    const std::string forever = "await " + place.file("never");
    tools.put("mero", "say begun " + forever);
    tools.put("plimb", forever);
    start({.bottom = true, .statistics = true});
    driver->press("Integrate");
    awaited_arguments("mero");
    driver->press("↻");
    awaited_arguments("plimb");
    expect_good_end();
}

TEST_F(Start, FollowsAResizedWindow)
{
    start({.width = 700, .height = 640});
    screen->resize_window(window, 1100, 1240);
    screen->settle();
    driver.emplace(*screen,
                   ui_driver::started_with{1100, 1240, place.file("src"), place.file("tray")});
    driver->show_bottom();
    tools.put("mero", "exit 0");
    driver->press("Evaluate");
    EXPECT_EQ(awaited_arguments("mero"), "-S\n/tmp//vimbo\n");
    screen->resize_window(window, 300, 200);
    screen->settle();
    expect_good_end();
}

TEST_F(Start, DrawsATrayOfTheGivenExtent)
{
    start({.more = {"-e", "50,20,0"}, .preview = true});
    const struct nk_rect area = driver->picture();
    const image all = screen->screenshot();
    const int middle_x = static_cast<int>(area.x + area.w / 2);
    const int middle_y = static_cast<int>(area.y + area.h / 2);
    // 262.144 mm in the picture's height; in its width as many as the whole
    // window's shape makes of them.
    const double per_mm_y = area.h / 262.144;
    const double per_mm_x = area.w / 262.144 * 1240 / 1200;
    const auto edge = [&](double mm, double per_mm) {
        return static_cast<int>(std::lround(mm * per_mm));
    };
    const auto near = [&](int x, int y) {
        for (int i = -1; i <= 1; ++i)
            if (all.at(x + i, y) == outline_colour || all.at(x, y + i) == outline_colour)
                return true;
        return false;
    };
    EXPECT_TRUE(near(middle_x + edge(25, per_mm_x), middle_y)) << "right edge";
    EXPECT_TRUE(near(middle_x - edge(25, per_mm_x), middle_y)) << "left edge";
    EXPECT_TRUE(near(middle_x, middle_y - edge(10, per_mm_y))) << "upper edge";
    EXPECT_TRUE(near(middle_x, middle_y + edge(10, per_mm_y))) << "lower edge";
    expect_good_end();
}

} // namespace
