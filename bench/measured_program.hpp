// The real program on a display of its own, and what a clock that is preloaded
// into it says of its frames.
#pragma once

#include "tests/support/program.hpp"
#include "tests/support/ui_driver.hpp"

#include <string>
#include <vector>

namespace bench
{

using rig::point;
using rig::program;
using rig::ui_driver;
using rig::x_server;

inline constexpr int window_width = 1600;
inline constexpr int window_height = 1240;

/// Seconds of the clock that the program's frames are noted with.
double now();

void sleep_for(double seconds);

struct frame_times {
    std::vector<double> intervals; // from one shown frame to the next
    std::vector<double> work;      // from the end of the wait to the shown frame
};

/// What the preloaded clock noted, in its order.
struct clock_entry {
    double time;
    std::string what; // see swap_clock.cpp
};
std::vector<clock_entry> read_clock(const std::string &log);

/// Where a program to be measured works, and what it is shown.
struct measured_place {
    std::string tray;
    std::string sources;
    std::string log; // its clock's
};

/// The command line that starts the program in a window of the size above.
std::vector<std::string> vimbo_command(const std::string &sources, const std::string &tray);

/// The options that start a program with the clock in it; its display and the
/// clock's file are those of the environment.
program::options with_clock(const x_server &screen, const std::vector<std::string> &arguments,
                            const std::string &log);

/// The program with all its panels open, the pointer in the picture's middle.
class measured_program
{
public:
    measured_program(x_server &display, const measured_place &where);
    ~measured_program();
    measured_program(const measured_program &) = delete;
    measured_program &operator=(const measured_program &) = delete;

    /// Waits until the program has nothing left to draw after `since`; the time
    /// of the frame with which that was so.
    double settle(double since) const;

    /// Waits until a frame has just been shown, so that what the program is given now is in
    /// the next one: else a frame at rest that was due might be taken for that one.
    void await_frame() const;

    /// The time of the first frame that was begun after `since` and left nothing to
    /// draw: to be called when the program has settled.
    double whole_frame(double since) const;

    frame_times between(double from, double to) const;
    /// The first shown frame after the first entry of this name after `since`;
    /// 0 when there is none yet.
    double frame_after(const std::string &what, double since) const;

    pid_t id() const
    {
        return vimbo.id();
    }
    point middle() const
    {
        return centre;
    }
    ui_driver &ui()
    {
        return driver;
    }

private:
    double standing_since(double since) const;

    std::string log;
    x_server &screen;
    program vimbo;
    unsigned long window;
    ui_driver driver;
    point centre = {};
};

/// Processor time of a process, all its threads, in seconds.
double processor_time_of(pid_t process);

/// A sample of frames of a program that is left alone.
frame_times at_rest(const measured_program &vimbo, double seconds);

/// Frame to frame time while the picture is dragged on and on.
double while_panning(x_server &screen, const measured_program &vimbo);

/// Frame to frame time while a replay runs.
double while_replaying(x_server &screen, const measured_program &vimbo);

/// Time of a replay from its first step to its last.
double whole_replay(x_server &screen, const measured_program &vimbo);

/// Work of the frames that pointer and keys bring about in a program with these
/// widgets where the driver knows them.
double hover_work(x_server &screen, rig::ui_driver &driver, const std::string &log);
double typing_work(x_server &screen, rig::ui_driver &driver, const std::string &log);

/// The times of a log's frames.
frame_times frames_between(const std::string &log, double from, double to);

} // namespace bench
