// The operator's place: an X server of its own, with a real pointer and keyboard
// on it, and eyes.
#pragma once

#include "tests/support/image.hpp"
#include "tests/support/point.hpp"

#include <sys/types.h>

#include <chrono>
#include <string>
#include <string_view>

struct _XDisplay; // NOLINT(bugprone-reserved-identifier): Xlib's own name for it

namespace rig
{

/// A virtual X server with one client of its own.
class x_server
{
public:
    explicit x_server(int width = 1920, int height = 1300, bool with_gl = true);
    ~x_server();
    x_server(const x_server &) = delete;
    x_server &operator=(const x_server &) = delete;

    /// As the environment's DISPLAY names it.
    const std::string &name() const
    {
        return display_name;
    }

    /// The top-level window with this title, of no title the first one; 0 when there is none.
    unsigned long find_window(std::string_view title) const;
    /// Asks the window to close, as its close button does.
    void close_window(unsigned long window) const;
    void resize_window(unsigned long window, int width, int height) const;
    void move_window(unsigned long window, point to) const;

    /// Takes the window for the one that all input is for: from now on every
    /// event is followed by frames in which it was seen, however slow they are.
    void attend(unsigned long window);
    /// The same where the window is a compositor's screen, which tells nothing of the
    /// programs on it: frames are what it shows.
    void attend_shown_frames(unsigned long window);
    /// Waits until the attended window's program has laid out a whole frame.
    /// Throws when it does not answer.
    void settle() const;

    /// From now on places are given in units of so many pixels.
    void count_in_units_of(double pixels)
    {
        unit = pixels;
    }

    /// How often the window's content changed on the screen in this time.
    int count_redraws(unsigned long window, std::chrono::milliseconds time) const;

    void move(point to) const;
    void press(int button = 1) const;
    void release(int button = 1) const;
    /// Down long enough for a frame to see it.
    void click(point at, int button = 1) const;
    /// Clicks one after the other, as fast as they can be made.
    void click_times(point at, int times) const;
    void scroll(int notches) const;
    /// Presses a modifier, such as "Shift_L", or lets go of it.
    void hold_modifier(std::string_view name, bool held) const;
    /// A key by its X name, such as "Return", "ctrl+a" or "ctrl+shift+z".
    void key(std::string_view name) const;
    /// The same, held down for so long: the X server repeats it.
    void hold_key(std::string_view name, std::chrono::milliseconds time) const;
    void type(std::u32string_view text) const;
    /// Gives the key that had one X name another one, as a keyboard's layout does.
    void relabel(std::string_view key, std::string_view symbol) const;

    image screenshot() const;

private:
    void start_server(const std::string &screen, bool with_gl);
    void end_server();
    void send_key(unsigned int code, bool down) const;
    unsigned int code_of(unsigned long symbol, bool &shift) const;

    void await_answer() const;
    void await_shown_frames() const;

    pid_t server = 0;
    double unit = 1;
    unsigned long attended = 0;
    bool answers = true; // the attended window does
    std::string display_name;
    _XDisplay *display = nullptr;
};

} // namespace rig
