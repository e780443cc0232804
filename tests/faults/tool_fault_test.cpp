// What tools that misbehave leave on the panels: their end is taken, and the
// edited text, the open file and the tray are as they were. Each fault is shown
// by the evaluator and by the statistics tool.
#include "tests/faults/fault_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/texts.hpp"
#include "tests/support/wait.hpp"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

using namespace rig;
using vimbo::has_flag;

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

    void script(const std::string &body)
    {
        write_script(tools.file("mero"), body);
        write_script(tools.file("plimb"), body);
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
        return has_flag(panels.app().frame.ui_flags, bits);
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

    // Each adds a byte to the file `sign` once it has begun, then waits for "go".
    void script_that_begins_and(const std::string &then)
    {
        script("printf x >>" + tools.file("begun") + "\n" + then +
               "\nexec " VIMBO_STUB_TOOL " await " + tools.file("go") + " exit 3\n");
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
        std::filesystem::remove(tools.file("plimb"));
        setenv("PATH", tools.folder().c_str(), 1);
        testing::internal::CaptureStderr();
    }

    void TearDown() override
    {
        const std::string told = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(holds(told, "mero"));
        EXPECT_TRUE(holds(told, "plimb"));
    }
};

TEST_F(MissingTool, ShowsTheErrorStatus)
{
    expect_of_both(".\nStatus: error.\n");
}

TEST_F(MissingTool, ThatIsNotExecutableShowsTheErrorStatus)
{
    write_file(tools.file("mero"), "#!/bin/sh\nexit 0\n");
    write_file(tools.file("plimb"), "#!/bin/sh\nexit 0\n");
    expect_of_both(".\nStatus: error.\n");
}

TEST_F(MissingTool, ThatIsADirectoryShowsTheErrorStatus)
{
    std::filesystem::create_directory(tools.file("mero"));
    std::filesystem::create_directory(tools.file("plimb"));
    expect_of_both(".\nStatus: error.\n");
}

TEST_F(FaultyTool, KilledByASignalShowsItsStatus)
{
    actions("say 'last words' die 9");
    testing::internal::CaptureStderr(); // some shells tell of it
    for (const char *button : {"Evaluate", "Integrate"}) {
        const std::string shown = run(button);
        // A shell in between makes an error of it, one that the tool has taken
        // the place of does not.
        EXPECT_TRUE(shown.ends_with("\nlast words\nStatus: error.\n") ||
                    shown.ends_with("\nlast words\nStatus: abnormal.\n"))
            << shown;
    }
    run("↻");
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(figures_that_are(0.5F), vimbo::stats_value_count);
    expect_as_before();
}

TEST_F(FaultyTool, EndingAtOnceShowsItsStatus)
{
    actions("exit 3");
    expect_of_both(".\nStatus: uknown.\n");
}

TEST_F(FaultyTool, PrintingAGigabyteIsDrainedToItsOwnStatus)
{
    script("yes | head -c 1000000000\nexit 3\n");
    expect_of_both("\n...\nStatus: uknown.\n");
}

TEST_F(FaultyTool, PrintingAGigabyteOfZeroBytesIsDrainedToItsOwnStatus)
{
    script("head -c 1000000000 /dev/zero\nexit 3\n");
    // A zero byte ends the text, so nothing is shown of it.
    expect_of_both(".\nStatus: uknown.\n");
}

TEST_F(FaultyTool, PrintingDigitsWithoutALineFeedTakesNoMemory)
{
    rusage before = {};
    getrusage(RUSAGE_SELF, &before);
    script("head -c 300000000 /dev/zero | tr '\\0' 1\nexit 3\n");
    run("Evaluate");
    expect_shown("\n...\nStatus: uknown.\n");
    run("↻");
    rusage after = {};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 32L * 1024) << "KiB";
    EXPECT_EQ(figures_that_are(INFINITY), vimbo::stats_value_count);
    EXPECT_TRUE(nothing_left());
    expect_as_before();
}

TEST_F(FaultyTool, PrintingInvalidUtf8AndTerminalEscapesShowsThemAsText)
{
    script("printf '\\377\\300\\033[2J\\033]0;x\\007end'\n");
    expect_of_both("\nEvaluation:\n\xff\xc0\x1b[2J\x1b]0;x\aend\nStatus: ok.\n");
}

TEST_F(FaultyTool, PrintingZeroBytesHidesWhatFollowsButNotItsStatus)
{
    script("printf 'seen\\0hidden'\nexit 1\n");
    expect_of_both("\nEvaluation:\nseenStatus: error.\n");
}

TEST_F(FaultyTool, ThatNeverEndsLeavesThePanelsUsable)
{
    script_that_begins_and("echo 0.5");
    start_both("begun");
    type_a_letter();
    expect_both_running();
    expect_as_before();
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    expect_shown("\n0.5\n\nStatus: uknown.\n");
    expect_as_before();
}

TEST_F(FaultyTool, ThatClosesItsOutputAndLivesOnIsNotWaitedFor)
{
    script_that_begins_and("echo begun\nexec >&-");
    start_both("begun");
    // The one tool's status is still to come; the other's figures are not.
    ASSERT_TRUE(wait_until([this] {
        panels.frame();
        return !running(vimbo::ui_flag::stats_running);
    }));
    EXPECT_EQ(children_of(getpid()), 2U) << "both live on";
    type_a_letter();
    EXPECT_TRUE(running(vimbo::ui_flag::eval_running));
    expect_as_before();
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    expect_shown("\nbegun\n\nStatus: uknown.\n");
    EXPECT_EQ(figures_that_are(0.5F), vimbo::stats_value_count);
    expect_as_before();
}

TEST_F(FaultyTool, ThatLeavesAnotherBehindEndsWithItsOwnProcess)
{
    actions("say 'last words' leave " + tools.file("go") + " exit 3");
    expect_of_both("\nlast words\nStatus: uknown.\n");
    write_file(tools.file("go"), "");
}

// No waiting anywhere has a time-out: not by a poll, not by the calendar, and not
// by frames, of which a minute has 1,800. The soak is silent for a real minute.
TEST_F(FaultyTool, ThatIsSilentForAMinuteIsWaitedFor)
{
    script_that_begins_and("");
    longest_poll = -1;
    start_both("begun");
    const std::time_t start = std::time(nullptr);
    for (int frame = 0; frame < 1900; ++frame) {
        clock_stands = start + std::time_t{60} * frame;
        panels.frame();
    }
    clock_stands = 0;
    expect_both_running();
    EXPECT_EQ(longest_poll, -1) << "milliseconds";
    expect_as_before();
    script("exit 1\n"); // what runs is not read again
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    expect_shown(".\nStatus: uknown.\n");
    expect_as_before();
}

} // namespace
