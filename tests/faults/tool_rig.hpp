// Tools that misbehave on both panels.
#pragma once

#include "tests/faults/fault_rig.hpp"
#include "tests/support/texts.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"

#include <algorithm>
#include <iterator>

namespace rig
{

class FaultyTool : public FaultRig
{
protected:
    // What a fault must not take from the charts.
    void SetUp() override
    {
        tools.put("plimb", "numbers 50 0.5");
        run("↻");
        ASSERT_EQ(figures_that_are(0.5F), vimbo::stats_value_count);
    }

    void actions(const std::string &wanted)
    {
        tools.put("mero", wanted);
        tools.put("plimb", wanted);
    }

    std::size_t figures_that_are(float value)
    {
        const vimbo::stats_run_state &got = panels.app().statistics.run;
        return static_cast<std::size_t>(
            std::count(std::begin(got.stats_locality), std::end(got.stats_locality), value) +
            std::count(std::begin(got.stats_directions), std::end(got.stats_directions), value) +
            std::count(std::begin(got.stats_moves), std::end(got.stats_moves), value));
    }

    void expect_shown(const std::string &end)
    {
        const std::string shown = panels.app().evaluation.eval_text;
        EXPECT_TRUE(shown.ends_with(end)) << shown;
    }

    // The evaluator's run ends so, and the other tool's brings no figure.
    void expect_of_both(const std::string &end)
    {
        for (const char *button : {"Evaluate", "Integrate"}) {
            run(button);
            expect_shown(end);
        }
        run("↻");
        EXPECT_EQ(figures_that_are(0.5F), vimbo::stats_value_count);
        EXPECT_TRUE(nothing_left());
        expect_as_before();
    }

    bool running(std::uint32_t bits)
    {
        return vimbo::has_flag(panels.app().frame.ui_flags, bits);
    }

    // Starts both and lets frames go by until both have made this file.
    void start_both(const std::string &sign)
    {
        panels.click("Evaluate");
        panels.click("↻");
        EXPECT_TRUE(wait_until([&] {
            panels.frame();
            return read_file(tools.file(sign)).size() == 2;
        })) << "they do not begin";
    }

    void expect_both_running()
    {
        EXPECT_TRUE(running(vimbo::ui_flag::eval_running));
        EXPECT_TRUE(running(vimbo::ui_flag::stats_running));
        EXPECT_TRUE(panels.find("Cancel"));
    }

    // Each adds a byte to the file "begun" once it has begun, then waits for "go".
    void begin_and(const std::string &then)
    {
        actions("begin " + tools.file("begun") + ' ' + then + " await " + tools.file("go") +
                " exit 3");
    }

    // In both panels a letter more.
    void type_a_letter()
    {
        vimbo::source_editor_state &editor = panels.app().editor;
        panels.click(point{14, 52});
        panels.key(NK_KEY_TEXT_END);
        panels.frame();
        panels.type("z");
        panels.frame();
        text += 'z';
        EXPECT_EQ(editor.source_text, text);
    }
};

// The shell's own lines about a tool that it cannot start.
class MissingTool : public FaultyTool
{
protected:
    void SetUp() override
    {
        FaultyTool::SetUp();
        tools.take_away("plimb");
        set_variable("PATH", tools.folder());
        testing::internal::CaptureStderr();
    }

    void TearDown() override
    {
        const std::string told = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(holds(told, "mero"));
        EXPECT_TRUE(holds(told, "plimb"));
    }
};

} // namespace rig
