// Tools' faults that are seen by this system's own means.
#include "tests/faults/tool_rig.hpp"

#include <cmath>
#include <sys/resource.h>

namespace
{

using namespace rig;

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

TEST_F(FaultyTool, PrintingDigitsWithoutALineFeedTakesNoMemory)
{
    rusage before = {};
    getrusage(RUSAGE_SELF, &before);
    actions("digits 300000000 exit 3");
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

// No waiting anywhere has a time-out: not by a poll, not by the calendar, and not
// by frames, of which a minute has 1,800. The soak is silent for a real minute.
TEST_F(FaultyTool, ThatIsSilentForAMinuteIsWaitedFor)
{
    begin_and("");
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
    actions("exit 1"); // what runs is not read again
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    expect_shown(".\nStatus: uknown.\n");
    expect_as_before();
}

} // namespace
