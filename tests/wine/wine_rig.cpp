#include "tests/wine/wine_rig.hpp"

#include "tests/support/wait.hpp"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <regex>
#include <stdexcept>
#include <string>

namespace rig
{

namespace
{

constexpr int width = 1600;
constexpr int height = 1240;

// Without what Wine itself writes when a process is ended amid a request, as a cancelled tool
// may be; it may be ended amid that line, too.
std::string without_wines_own(const std::string &errors)
{
    static const std::regex own("wine client error:[0-9a-f]+: ([^\n]*\n)?");
    return std::regex_replace(errors, own, "");
}

} // namespace

std::string windows_path(const std::string &path)
{
    std::string there = "Z:" + path;
    std::ranges::replace(there, '/', '\\');
    return there;
}

std::string windows_folder()
{
    const char *folder = std::getenv("VIMBO_WINDOWS");
    if (folder == nullptr)
        throw std::runtime_error("VIMBO_WINDOWS names no folder");
    return folder;
}

WineRig::WineRig()
{
    std::filesystem::create_directories(place.file("src"));
    std::filesystem::create_directories(place.file("tray"));
    std::filesystem::remove(stop_marker);
}

WineRig::~WineRig()
{
    if (vimbo != nullptr && vimbo->running())
        save_screen_of_failure();
}

void WineRig::save_screen_of_failure() const
{
    if (!HasFailure() || screen == nullptr)
        return;
    const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path folder = "failures";
    std::filesystem::create_directories(folder);
    const std::filesystem::path file = folder / (std::string("wine-") + test->name() + ".png");
    save_png(screen->screenshot(), file.string());
    std::cout << "the screen of the failure: " << std::filesystem::absolute(file).string() << '\n';
}

void WineRig::start()
{
    // Larger than the window and its frame, or Wine makes the window smaller.
    screen = std::make_unique<x_server>(width + 320, height + 160);
    const std::string tools = windows_path(windows_folder()) + "\\lib\\vimbo\\toolchain";
    vimbo = std::make_unique<program>(
        program::options{.arguments = {"wine", windows_folder() + "/bin/vimbo.exe", "-s",
                                       place.file("src"), "-t", place.file("tray"), "-w",
                                       std::to_string(width) + ',' + std::to_string(height)},
                         .environment = {"DISPLAY=" + screen->name(), "WINEPATH=" + tools},
                         .directory = place.path().string(),
                         .output = place.file("output"),
                         .errors = place.file("errors")});
    window = wait_for_window(*screen);
    // Beyond the frame that Wine keeps free for itself.
    screen->move_window(window, {0, 0});
    screen->settle();
    driver.emplace(*screen,
                   ui_driver::started_with{width, height, place.file("src"), place.file("tray")});
}

void WineRig::show_all()
{
    driver->show_bottom();
    driver->show_preview();
    driver->show_statistics();
}

void WineRig::expect_good_end()
{
    const int status = vimbo->wait_for_end();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "wait status " << status;
    EXPECT_EQ(read_file(place.file("output")), "");
    EXPECT_EQ(without_wines_own(read_file(place.file("errors"))), "");
}

void WineRig::close_and_expect_good_end()
{
    save_screen_of_failure();
    screen->close_window(window);
    expect_good_end();
}

int WineRig::count(const struct nk_rect &area, colour wanted) const
{
    const image all = screen->screenshot();
    int found = 0;
    for (int y = static_cast<int>(area.y); y < static_cast<int>(area.y + area.h); ++y)
        for (int x = static_cast<int>(area.x); x < static_cast<int>(area.x + area.w); ++x)
            found += all.at(x, y) == wanted ? 1 : 0;
    return found;
}

} // namespace rig
