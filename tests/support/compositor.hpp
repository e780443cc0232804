// A Wayland desktop of the test's own, whose one screen is a window on an X server:
// so it has a real pointer and keyboard, and can be seen, at any density.
#pragma once

#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/x_server.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rig
{

class compositor
{
public:
    /// Its screen takes so many pixels of the X server's upper left corner; a client's
    /// only window fills it.
    compositor(x_server &where, int width, int height, double scale);
    ~compositor();
    compositor(const compositor &) = delete;
    compositor &operator=(const compositor &) = delete;

    /// What its clients have in their environment, which leads to no X server.
    std::vector<std::string> environment() const;

    /// Pixels in one of its clients' units, from now on; the X server's pointer is
    /// moved in these as well.
    void set_scale(double scale);

    /// Tells it one of its commands, "workspace 2" say. Throws when it does not obey.
    void tell(const std::string &command) const;

    /// What it says about all windows, as JSON.
    std::string windows() const;

    /// True once the only window has filled the screen.
    bool shows(std::string_view title) const;

    /// The X window that is its screen.
    unsigned long screen_window() const
    {
        return window;
    }

private:
    std::string ask(const std::vector<std::string> &what) const;

    x_server &server;
    const int width, height;
    double pixels_per_unit;
    unsigned long window = 0;
    const scratch_directory place;
    std::optional<program> sway;
};

} // namespace rig
