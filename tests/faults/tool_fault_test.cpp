// What tools that misbehave leave on the panels: their end is taken, and the
// edited text, the open file and the tray are as they were. Each fault is shown
// by the evaluator and by the statistics tool.
#include "tests/faults/tool_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/wait.hpp"

#include <unistd.h>

namespace
{

using namespace rig;

TEST_F(MissingTool, ShowsTheErrorStatus)
{
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
    actions("lines 1000000000 exit 3");
    expect_of_both("\n...\nStatus: uknown.\n");
}

TEST_F(FaultyTool, PrintingAGigabyteOfZeroBytesIsDrainedToItsOwnStatus)
{
    actions("zeros 1000000000 exit 3");
    // A zero byte ends the text, so nothing is shown of it.
    expect_of_both(".\nStatus: uknown.\n");
}

TEST_F(FaultyTool, PrintingInvalidUtf8AndTerminalEscapesShowsThemAsText)
{
    actions("bytes ffc01b5b324a1b5d303b7807656e64");
    expect_of_both("\nEvaluation:\n\xff\xc0\x1b[2J\x1b]0;x\aend\nStatus: ok.\n");
}

TEST_F(FaultyTool, PrintingZeroBytesHidesWhatFollowsButNotItsStatus)
{
    actions("say seen zeros 1 say hidden exit 1");
    expect_of_both("\nEvaluation:\nseenStatus: error.\n");
}

TEST_F(FaultyTool, ThatNeverEndsLeavesThePanelsUsable)
{
    begin_and("say '0.5\\n'");
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
    begin_and("say 'begun\\n' shut");
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

} // namespace
