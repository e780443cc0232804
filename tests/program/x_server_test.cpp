// The tests' own X server, where a program's windows come and go by themselves.
#include "tests/support/x_server.hpp"

#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <atomic>
#include <thread>

namespace
{

using rig::x_server;

// Windows that are there for less than a round trip.
void show_short_lived_windows(const std::string &server, int count)
{
    Display *display = XOpenDisplay(server.c_str());
    for (int i = 0; i < count; ++i) {
        const Window window =
            XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
        XFlush(display);
        XDestroyWindow(display, window);
        XFlush(display);
    }
    XCloseDisplay(display);
}

TEST(XServer, LooksForAWindowWhileOthersVanish)
{
    constexpr int windows = 20000;
    const x_server screen(100, 100, false);
    std::atomic<bool> over = false;
    std::thread program([&] {
        show_short_lived_windows(screen.name(), windows);
        over = true;
    });
    int searches = 0;
    for (; !over; ++searches)
        EXPECT_EQ(screen.find_window("none of them"), 0U);
    program.join();
    EXPECT_GT(searches, 0);
}

TEST(XServer, TakesAWindowThatIsGoneForNone)
{
    const x_server screen(100, 100, false);
    Display *display = XOpenDisplay(screen.name().c_str());
    const Window window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
    XStoreName(display, window, "gone");
    XMapWindow(display, window);
    XSync(display, False);
    EXPECT_EQ(screen.find_window("gone"), window);
    XDestroyWindow(display, window);
    XSync(display, False);
    screen.close_window(window);
    EXPECT_EQ(screen.find_window("gone"), 0U);
    XCloseDisplay(display);
}

} // namespace
