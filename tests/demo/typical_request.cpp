// The operator's typical request, made with real mouse and key events on a
// virtual display: pick a source, edit it, integrate it, look at it from nearer,
// have it measured. Leaves a picture of the window.
//
//   typical_request VIMBO SOURCES TRAY PICTURE
#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/ui_driver.hpp"
#include "tests/support/wait.hpp"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <thread>

namespace
{

using namespace rig;

constexpr int width = 1600;
constexpr int height = 1240;

void require(bool held, const char *what)
{
    if (!held)
        throw std::runtime_error(std::string("it did not happen that ") + what);
}

void wait_a_moment()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
}

point middle_of(const struct nk_rect &area)
{
    return {static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)};
}

void edit_source(ui_driver &driver)
{
    driver.choose("--", "rosette.lua");
    driver.screen().click(driver.editor());
    driver.screen().key("Up");
    driver.screen().key("ctrl+Home");
    driver.screen().type(U"-- edited on the screen: ");
}

void integrate(ui_driver &driver, const std::filesystem::path &mosaic)
{
    std::filesystem::remove(mosaic);
    driver.press("Integrate");
    require(wait_until([&] { return std::filesystem::exists(mosaic); }), "the mosaic was built");
    wait_a_moment();
}

void look_nearer(ui_driver &driver)
{
    const point centre = middle_of(driver.picture());
    driver.screen().move(centre);
    wait_a_moment();
    driver.screen().scroll(1);
    wait_a_moment();
    driver.screen().press();
    driver.screen().move({centre.x + 20, centre.y});
    wait_a_moment();
    driver.screen().release();
    wait_a_moment();
}

void measure(ui_driver &driver)
{
    driver.press("↻");
    wait_a_moment();
    wait_a_moment();
}

void make_request(const char *vimbo, const std::string &sources, const std::string &tray,
                  const char *picture)
{
    x_server screen(width, height);
    program running({.arguments = {vimbo, "-s", sources, "-t", tray, "-w",
                                   std::to_string(width) + ',' + std::to_string(height)},
                     .environment = {"DISPLAY=" + screen.name()},
                     .directory = {},
                     .output = std::string(picture) + ".log"});
    const unsigned long window = wait_for_window(screen);
    ui_driver driver(screen, {width, height, sources, tray});
    driver.show_bottom();
    driver.show_preview();
    driver.show_statistics();
    edit_source(driver);
    integrate(driver, std::filesystem::path(tray) / "_mosaics" / "0.mmv");
    measure(driver);
    look_nearer(driver);
    save_png(screen.screenshot(), picture);
    screen.close_window(window);
    require(running.wait_for_end() == 0, "the program ended with status 0");
}

} // namespace

int main(int argument_count, char *arguments[])
{
    if (argument_count != 5) {
        std::fputs("usage: typical_request VIMBO SOURCES TRAY PICTURE\n", stderr);
        return 2;
    }
    try {
        make_request(arguments[1], arguments[2], arguments[3], arguments[4]);
        return 0;
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "typical request: %s\n", fault.what());
        return 1;
    }
}
