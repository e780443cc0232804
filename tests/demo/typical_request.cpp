// The operator's typical request, made with real mouse and key events on a
// virtual display: pick a source, edit it, integrate it, look at it from nearer,
// have it measured. Leaves a picture of the window.
//
//   typical_request VIMBO SOURCES TRAY PICTURE
#include "tests/support/operator.hpp"
#include "tests/support/scratch.hpp"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <thread>

namespace
{

using namespace bench;

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

void edit_source(desk_operator &hand)
{
    hand.choose("--", "rosette.lua");
    hand.screen().click(hand.editor());
    hand.screen().key("Up");
    hand.screen().key("Home");
    hand.screen().type(U"-- edited on the screen: ");
}

void integrate(desk_operator &hand, const std::filesystem::path &mosaic)
{
    std::filesystem::remove(mosaic);
    hand.press("Integrate");
    require(wait_until([&] { return std::filesystem::exists(mosaic); }), "the mosaic was built");
    wait_a_moment();
}

void look_nearer(desk_operator &hand)
{
    const point centre = middle_of(hand.picture());
    hand.screen().move(centre);
    wait_a_moment();
    hand.screen().scroll(1);
    wait_a_moment();
    hand.screen().press();
    hand.screen().move({centre.x + 20, centre.y});
    wait_a_moment();
    hand.screen().release();
    wait_a_moment();
}

void measure(desk_operator &hand)
{
    hand.press("↻");
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
    desk_operator hand(screen, {width, height, sources, tray});
    hand.show_bottom();
    hand.show_preview();
    hand.show_statistics();
    edit_source(hand);
    integrate(hand, std::filesystem::path(tray) / "_mosaics" / "0.mmv");
    measure(hand);
    look_nearer(hand);
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
