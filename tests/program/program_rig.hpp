// The installed program in surroundings of its own: a display, a folder with
// sources, trays and tools, and a driver that plays the operator.
#pragma once

#include "tests/support/compositor.hpp"
#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/ui_driver.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rig
{

inline constexpr colour picture_background = {110, 142, 190};
inline constexpr colour mark_colour = {255, 255, 255};
inline constexpr colour outline_colour = {217, 166, 115};

/// The program as it is installed, started on what the test has put in place.
class ProgramRig : public testing::Test
{
protected:
    ProgramRig();
    ~ProgramRig() override;

    struct start_options {
        int width = 1200;
        int height = 1240;
        std::vector<std::string> more = {};        // arguments behind the usual ones
        std::vector<std::string> environment = {}; // beside the display
        bool bottom = false;                       // shows the lower row,
        bool preview = false;                      // the Preview in it,
        bool statistics = false;                   // and the Statistics panel
        double scale = 0; // pixels in a unit, under a Wayland compositor; 0: under X
    };
    /// Starts it and waits for its first frame.
    void start(const start_options &how);
    void start()
    {
        start({});
    }

    /// Asks the window to close and expects the end with status 0, nothing on
    /// standard output and, unless something else is named, nothing on standard
    /// error. The program must have no more descriptors open than at its start but
    /// those of tools that still run, and have taken the end of all others.
    void expect_good_end(const std::string &complaints = {});

    std::string source(const std::string &name) const
    {
        return place.file("src/" + name);
    }
    std::string mosaic(int index, const std::string &tray = "tray") const
    {
        return place.file(tray + "/_mosaics/" + std::to_string(index) + ".mmv");
    }
    /// All of standard output.
    std::string printed() const
    {
        return read_file(place.file("output"));
    }
    /// All of standard error, the tools' included.
    std::string complaints() const
    {
        return read_file(place.file("errors"));
    }

    /// The text that Evaluate hands over now; the bottom must be shown.
    std::string evaluated_text();
    /// Waits until the tool has noted its arguments, and gives them.
    std::string awaited_arguments(std::string_view tool);

    /// Pixels of this colour in the picture, or in any area.
    int count_in_picture(colour wanted);
    int count(const struct nk_rect &area, colour wanted) const;
    /// Waits until the picture has at least, or at most, so many of them.
    bool shows(colour wanted, int at_least);
    bool shows_none(colour wanted);

    // Where something has failed, leaves a picture of the screen to look at.
    void save_screen_of_failure() const;

    const scratch_directory place;
    const tool_path tools;
    std::unique_ptr<x_server> screen;
    std::unique_ptr<compositor> desktop; // where a scale is named
    std::unique_ptr<program> vimbo;
    std::optional<ui_driver> driver;
    unsigned long window = 0;
    std::size_t descriptors = 0;

private:
    /// Makes the display, and gives what leads to it from the environment.
    std::vector<std::string> make_display(const start_options &how);
    void await_window();
    void close_window() const;
};

/// A square of marks, its sides so far from the centre, in mm.
std::string square_mosaic(int half_side);

/// Runs the program to its end without waiting for a window.
struct ended_run {
    int exit_code; // -1: it did not end, or not by itself
    std::string printed;
    std::string complaints;
};
ended_run run_to_end(const std::vector<std::string> &arguments,
                     const std::vector<std::string> &environment);

} // namespace rig
