#include "tests/program/program_rig.hpp"
#include "tests/support/program.hpp"
#include "tests/support/wait.hpp"

#include "tests/support/child_watch.hpp"

#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace rig
{

namespace
{

// Frames go by between two looks.
constexpr auto between_looks = std::chrono::milliseconds(50);

} // namespace

ProgramRig::ProgramRig()
{
    std::filesystem::create_directories(place.file("src"));
    std::filesystem::create_directories(place.file("tray"));
    std::filesystem::remove("/tmp/mero.end");
    std::filesystem::remove("/tmp/vimbo");
}

std::vector<std::string> ProgramRig::make_display(const start_options &how)
{
    if (how.scale == 0) {
        screen = std::make_unique<x_server>();
        return {"DISPLAY=" + screen->name()};
    }
    constexpr int beside = 100; // where the pointer is outside
    const int width = static_cast<int>(std::lround(how.width * how.scale));
    const int height = static_cast<int>(std::lround(how.height * how.scale));
    screen = std::make_unique<x_server>(width + beside, height);
    desktop = std::make_unique<compositor>(*screen, width, height, how.scale);
    return desktop->environment();
}

void ProgramRig::await_window()
{
    if (desktop == nullptr) {
        window = wait_for_window(*screen);
        return;
    }
    if (!wait_until([this] { return desktop->shows(window_title); }))
        throw std::runtime_error("the program showed no window");
    screen->attend_shown_frames(desktop->screen_window());
    screen->settle();
}

void ProgramRig::close_window() const
{
    if (desktop == nullptr)
        screen->close_window(window);
    else
        desktop->tell("[app_id=\".*\"] kill");
}

ProgramRig::~ProgramRig()
{
    if (vimbo != nullptr && vimbo->running())
        save_screen_of_failure();
}

void ProgramRig::save_screen_of_failure() const
{
    if (!HasFailure() || screen == nullptr)
        return;
    const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path folder = "failures";
    std::string name = std::string(test->test_suite_name()) + '.' + test->name();
    std::ranges::replace(name, '/', '-');
    std::filesystem::create_directories(folder);
    const std::filesystem::path file = folder / (name + ".png");
    save_png(screen->screenshot(), file.string());
    std::cout << "the screen of the failure: " << std::filesystem::absolute(file).string() << '\n';
}

void ProgramRig::start(const start_options &how)
{
    const std::string size = std::to_string(how.width) + ',' + std::to_string(how.height);
    program::options options = {
        .arguments = {VIMBO_PROGRAM, "-s", place.file("src"), "-t", place.file("tray"), "-w", size},
        .environment = make_display(how),
        .directory = place.path().string(),
        .output = place.file("output"),
        .errors = place.file("errors")};
    options.arguments.insert(options.arguments.end(), how.more.begin(), how.more.end());
    options.environment.insert(options.environment.end(), how.environment.begin(),
                               how.environment.end());
    vimbo = std::make_unique<program>(options);
    await_window();
    driver.emplace(*screen, ui_driver::started_with{how.width, how.height, place.file("src"),
                                                    place.file("tray")});
    if (how.bottom || how.preview)
        driver->show_bottom();
    if (how.preview)
        driver->show_preview();
    if (how.statistics)
        driver->show_statistics();
    descriptors = open_descriptors(vimbo->id());
}

void ProgramRig::expect_good_end(const std::string &wanted)
{
    constexpr std::size_t of_a_tool = 2; // its pipe's end and its process's
    const pid_t id = vimbo->id();
    const auto nothing_left = [&] {
        return zombies_of(id) == 0 &&
               open_descriptors(id) <= descriptors + of_a_tool * children_of(id);
    };
    EXPECT_TRUE(wait_until(nothing_left))
        << open_descriptors(id) << " descriptors are open, " << descriptors
        << " were at the start, for " << children_of(id) << " children, of which " << zombies_of(id)
        << " have ended";
    save_screen_of_failure();
    close_window();
    const int status = vimbo->wait_for_end();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "wait status " << status;
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(complaints(), wanted);
}

std::string ProgramRig::evaluated_text()
{
    tools.put("mero", "exit 0");
    std::filesystem::remove(tools.file("mero.arguments"));
    driver->press("Evaluate");
    awaited_arguments("mero");
    // Its end has been taken once nothing of it is left.
    EXPECT_TRUE(wait_until([this] { return children_of(vimbo->id()) == 0; }));
    screen->settle();
    return read_file("/tmp/vimbo");
}

std::string ProgramRig::awaited_arguments(std::string_view tool)
{
    const std::string noted = tools.file(std::string(tool) + ".arguments");
    EXPECT_TRUE(wait_until([&] { return std::filesystem::exists(noted); }))
        << tool << " was not started";
    return tools.arguments_of(tool);
}

int ProgramRig::count(const struct nk_rect &area, colour wanted) const
{
    const image all = screen->screenshot();
    int found = 0;
    for (int y = static_cast<int>(area.y); y < static_cast<int>(area.y + area.h); ++y)
        for (int x = static_cast<int>(area.x); x < static_cast<int>(area.x + area.w); ++x)
            found += all.at(x, y) == wanted ? 1 : 0;
    return found;
}

int ProgramRig::count_in_picture(colour wanted)
{
    return count(driver->picture(), wanted);
}

bool ProgramRig::shows(colour wanted, int at_least)
{
    return wait_until([&] {
        std::this_thread::sleep_for(between_looks);
        return count_in_picture(wanted) >= at_least;
    });
}

bool ProgramRig::shows_none(colour wanted)
{
    return wait_until([&] {
        std::this_thread::sleep_for(between_looks);
        return count_in_picture(wanted) == 0;
    });
}

std::string square_mosaic(int half_side)
{
    constexpr int steps = 100; // of each side: a replay shows them grow
    const ::vimbo::length_unit at = half_side * ::vimbo::length_units_per_mm;
    std::vector<::vimbo::path_vertex> points = {{-at, -at}};
    const int corners[][2] = {{1, -1}, {1, 1}, {-1, 1}, {-1, -1}};
    int from[2] = {-1, -1};
    for (const auto &to : corners) {
        for (int step = 1; step <= steps; ++step)
            points.push_back({at / steps * (from[0] * (steps - step) + to[0] * step),
                              at / steps * (from[1] * (steps - step) + to[1] * step) + 1});
        from[0] = to[0];
        from[1] = to[1];
    }
    return mosaic_bytes(points);
}

ended_run run_to_end(const std::vector<std::string> &arguments,
                     const std::vector<std::string> &environment)
{
    const scratch_directory place;
    program run({.arguments = arguments,
                 .environment = environment,
                 .directory = {},
                 .output = place.file("output"),
                 .errors = place.file("errors")});
    const int status = run.wait_for_end();
    return {status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            read_file(place.file("output")), read_file(place.file("errors"))};
}

} // namespace rig
