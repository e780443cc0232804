// The program that is built for Windows, at work under Wine on a display of its own: the
// operator's hand and eyes are this system's. The environment names its folder in
// VIMBO_WINDOWS, and Wine's prefix.
#pragma once

#include "tests/support/program.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/ui_driver.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace rig
{

/// Asks the evaluator to end; both systems have it by one name.
inline constexpr char stop_marker[] = "/tmp/mero.end";

class WineRig : public testing::Test
{
protected:
    WineRig();
    ~WineRig() override;

    /// Starts it on the test's folders and waits for its first frame.
    void start();

    /// Shows all panels.
    void show_all();

    /// Expects the end with status 0 and nothing printed.
    void expect_good_end();

    /// Asks the window to close and expects the same.
    void close_and_expect_good_end();

    std::string source(const std::string &name) const
    {
        return place.file("src/" + name);
    }
    std::string mosaic(int index, const std::string &tray = "tray") const
    {
        return place.file(tray + "/_mosaics/" + std::to_string(index) + ".mmv");
    }

    /// Where something has failed, leaves a picture of the screen to look at.
    void save_screen_of_failure() const;

    /// Pixels of this colour in an area.
    int count(const struct nk_rect &area, colour wanted) const;

    const scratch_directory place;
    std::unique_ptr<x_server> screen;
    std::unique_ptr<program> vimbo;
    std::optional<ui_driver> driver;
    unsigned long window = 0;
};

/// A path of this system as the other one names it.
std::string windows_path(const std::string &path);

/// The folder that VIMBO_WINDOWS names.
std::string windows_folder();

} // namespace rig
