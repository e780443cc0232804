// The panels with a source open and a tray, where something goes wrong.
#pragma once

#include "tests/faults/system_calls.hpp"
#include "tests/support/panel_rig.hpp"
#include "tests/support/tool_path.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace rig
{

class FaultRig : public testing::Test
{
protected:
    FaultRig();
    ~FaultRig() override;

    /// The text, the name of the open file and the tray are as the test had them
    /// last: as they were made, or as `text` and `open_file` say.
    void expect_as_before();

    /// Opens a source of this content; it is what should stay from then on.
    void open(const std::string &path, const std::string &content);

    /// Frames until no tool runs on the panels.
    bool finish();
    /// Presses the button and awaits the run's end: what the panel then shows.
    std::string run(std::string_view button);
    /// What the program printed on standard error in the run; the test's tools
    /// print nothing there.
    std::string run_and_complaint(std::string_view button);

    /// The name of the open file.
    std::string open_name() const;

    /// Saves under this name through the bar: what that printed.
    std::string save_as(const std::string &name);

    /// Frames until all that was let go has ended.
    bool nothing_left();

    std::string edited() const
    {
        return panels.app().editor.source_text;
    }
    std::string open_path() const
    {
        return panels.app().bar.source_path;
    }

    const scratch_directory place;
    const tool_path tools;
    std::string sources, tray;
    std::string text, open_file;
    mutable panel_rig panels;
};

} // namespace rig
