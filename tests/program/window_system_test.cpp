// Which of X and Wayland the program comes up on where one of them fails.
#include "tests/program/program_rig.hpp"
#include "tests/support/wait.hpp"

#include <wayland-server-core.h>

#include <cstdlib>
#include <regex>
#include <stop_token>
#include <thread>

namespace
{

using namespace rig;

// A compositor that has nothing: no screen, no seat.
class empty_compositor
{
public:
    empty_compositor()
    {
        setenv("XDG_RUNTIME_DIR", place.path().c_str(), 1);
        if (wl_display_add_socket(display, "wayland-1") != 0)
            throw std::runtime_error("no socket for the compositor");
        serving = std::jthread([this](const std::stop_token &end) {
            constexpr int look = 20; // milliseconds
            while (!end.stop_requested()) {
                wl_event_loop_dispatch(wl_display_get_event_loop(display), look);
                wl_display_flush_clients(display);
            }
        });
    }

    ~empty_compositor()
    {
        serving = {};
        wl_display_destroy_clients(display);
        wl_display_destroy(display);
    }

    empty_compositor(const empty_compositor &) = delete;
    empty_compositor &operator=(const empty_compositor &) = delete;

    std::string directory() const
    {
        return place.path().string();
    }

private:
    const scratch_directory place;
    wl_display *display = wl_display_create();
    std::jthread serving;
};

class WindowSystem : public ProgramRig
{
protected:
    static constexpr int width = 600;
    static constexpr int height = 400;

    WindowSystem()
        : screen_of_desktop(width, height), desktop_beside(screen_of_desktop, width, height, 1)
    {
    }

    // Where the session names X first, or Wayland, and both are there unless something
    // else is named.
    void run(const std::string &first, const x_server &x, const std::vector<std::string> &besides)
    {
        std::vector<std::string> all = desktop_beside.environment();
        all.insert(all.end(), {"DISPLAY=" + x.name(), "XDG_SESSION_TYPE=" + first});
        all.insert(all.end(), besides.begin(), besides.end());
        vimbo = std::make_unique<program>(
            program::options{.arguments = {VIMBO_PROGRAM, "-w", "400,300"},
                             .environment = all,
                             .directory = place.path().string(),
                             .output = place.file("output"),
                             .errors = place.file("errors")});
    }

    void expect_to_come_up_on(x_server &x)
    {
        x.close_window(wait_for_window(x));
        EXPECT_EQ(vimbo->wait_for_end(), 0);
        EXPECT_FALSE(desktop_beside.shows(window_title));
    }

    void expect_to_come_up_on_wayland()
    {
        ASSERT_TRUE(wait_until([this] { return desktop_beside.shows(window_title); }));
        desktop_beside.tell("[app_id=\".*\"] kill");
        EXPECT_EQ(vimbo->wait_for_end(), 0);
    }

    void expect_no_message() const
    {
        EXPECT_EQ(printed(), "");
        EXPECT_EQ(complaints(), "");
    }

    // The failure of the first one is told by GLFW's errors alone.
    void expect_only_glfw_errors() const
    {
        EXPECT_TRUE(std::regex_match(printed(), std::regex("(glfw err [0-9]+: [^\n]+\n)+")))
            << printed();
        EXPECT_EQ(complaints(), "");
    }

    x_server screen_of_desktop;
    compositor desktop_beside;
};

TEST_F(WindowSystem, IsTheOneThatTheSessionNamesWhereBothAreThere)
{
    x_server x(width, height);
    run("x11", x, {});
    expect_to_come_up_on(x);
    expect_no_message();
    run("wayland", x, {});
    expect_to_come_up_on_wayland();
    expect_no_message();
}

TEST_F(WindowSystem, IsXWhereTheCompositorIsGone)
{
    x_server x(width, height);
    run("wayland", x, {"WAYLAND_DISPLAY=nobody"});
    expect_to_come_up_on(x);
    expect_only_glfw_errors();
}

TEST_F(WindowSystem, IsWaylandWhereTheXServerIsGone)
{
    const x_server x(width, height);
    run("x11", x, {"DISPLAY=:4999"});
    expect_to_come_up_on_wayland();
    expect_only_glfw_errors();
}

TEST_F(WindowSystem, IsXWhereWaylandGivesNoWindow)
{
    x_server x(width, height);
    run("wayland", x, {"__EGL_VENDOR_LIBRARY_FILENAMES=/dev/null"});
    expect_to_come_up_on(x);
    expect_only_glfw_errors();
}

TEST_F(WindowSystem, IsWaylandWhereXGivesNoWindow)
{
    const x_server x(width, height, false);
    run("x11", x, {});
    expect_to_come_up_on_wayland();
    expect_only_glfw_errors();
}

TEST_F(WindowSystem, IsXWhereTheCompositorHasNoSeat)
{
    const empty_compositor seatless;
    x_server x(width, height);
    run("wayland", x, {"XDG_RUNTIME_DIR=" + seatless.directory()});
    expect_to_come_up_on(x);
    expect_no_message();
}

TEST_F(WindowSystem, ThatHasNoSeatEndsTheStartInOneLineWhereThereIsNoOther)
{
    const empty_compositor seatless;
    const ended_run run =
        run_to_end({VIMBO_PROGRAM}, {"XDG_RUNTIME_DIR=" + seatless.directory(),
                                     "WAYLAND_DISPLAY=wayland-1", "DISPLAY=:4999"});
    EXPECT_EQ(run.exit_code, 255);
    EXPECT_EQ(run.complaints, "GFLW failed to init!\n");
    EXPECT_TRUE(std::regex_match(run.printed, std::regex("glfw err [0-9]+: [^\n]+\n")))
        << run.printed;
}

} // namespace
