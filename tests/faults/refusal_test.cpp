// What the program makes of a system that refuses: no pipe, no process, no
// thread.
#include "tests/faults/system_calls.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/panel_bench.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/x_server.hpp" // wait_until

#include <gtest/gtest.h>
#include <unistd.h>

#include <regex>

namespace
{

using namespace bench;
using vimbo::has_flag;

class Refusal : public testing::Test
{
protected:
    Refusal()
    {
        refused = {};
        clock_stands = 0;
        vimbo::app_state &app = desk.app();
        app.frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::stats_shown;
        desk.frame();
        std::snprintf(app.mosaic.tray_directory, sizeof app.mosaic.tray_directory, "%s",
                      tools.folder().c_str());
        tools.put("mero", "say output exit 3");
        tools.put("plimb", "numbers 50 0.5");
    }

    ~Refusal() override
    {
        refused = {};
    }

    bool flagged(std::uint32_t bit)
    {
        return has_flag(desk.app().frame.ui_flags, bit);
    }

    bool finish(std::uint32_t running_bit)
    {
        return wait_until([&] {
            if (flagged(running_bit))
                desk.frame();
            return !flagged(running_bit);
        });
    }

    std::string text()
    {
        return desk.app().evaluation.eval_text;
    }

    // Everything works again once the system does.
    void expect_working()
    {
        refused = {};
        desk.click("Evaluate");
        ASSERT_TRUE(finish(vimbo::ui_flag::eval_running));
        EXPECT_TRUE(std::regex_match(
            text(), std::regex("Compilling\\.+\nEvaluation:\noutput\nStatus: uknown\\.\n")))
            << text();
        desk.click("↻");
        ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
        EXPECT_EQ(desk.app().statistics.run.stats_moves[0], 0.5F);
    }

    const tool_path tools;
    panel_bench desk;
};

void expect_no_command(bool &refusal)
{
    const std::size_t descriptors = open_descriptors(getpid());
    refusal = true;
    for (int i = 0; i < 2 * vimbo::max_commands; ++i)
        EXPECT_EQ(vimbo::open_command("true"), nullptr);
    refusal = false;
    EXPECT_EQ(open_descriptors(getpid()), descriptors);
    EXPECT_EQ(children_of(getpid()), 0U);
    FILE *stream = vimbo::open_command("true");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(vimbo::close_command(stream), 0);
}

TEST_F(Refusal, OfAPipeLeavesNothingBehind)
{
    expect_no_command(refused.pipe);
}

TEST_F(Refusal, OfAProcessLeavesNothingBehind)
{
    expect_no_command(refused.process);
}

TEST_F(Refusal, OfAStreamLeavesNothingBehind)
{
    expect_no_command(refused.stream);
}

TEST_F(Refusal, OfTheProcessesEndStillReadsToTheEndOfTheOutput)
{
    refused.process_end = true;
    FILE *stream = vimbo::open_command(stub("say text exit 3").c_str());
    ASSERT_NE(stream, nullptr);
    char buffer[16] = {};
    EXPECT_EQ(std::fread(buffer, 1, sizeof buffer, stream), 4U);
    EXPECT_EQ(vimbo::close_command(stream), 3);
}

TEST_F(Refusal, OfAnEvaluatorIsTold)
{
    for (const char *button : {"Evaluate", "Integrate"}) {
        refused.process = true;
        desk.click(button);
        desk.frame();
        EXPECT_EQ(text(), "Error: cannot start the evaluator.\n");
        EXPECT_FALSE(flagged(vimbo::ui_flag::eval_running));
        EXPECT_TRUE(desk.find("Evaluate"));
    }
    expect_working();
}

TEST_F(Refusal, OfTheEvaluatorsThreadIsToldAndEndsEvaluation)
{
    refused.thread = true;
    desk.click("Evaluate");
    refused.thread = false;
    EXPECT_EQ(text().rfind("Compilling.Error: cannot track results.\n", 0), 0U) << text();
    EXPECT_FALSE(flagged(vimbo::ui_flag::eval_running));
    const std::size_t shown = text().size();
    desk.frame();
    EXPECT_EQ(text().size(), shown + 1) << "the dots go on";
    EXPECT_TRUE(desk.find("Evaluate"));
    EXPECT_TRUE(desk.find("Integrate"));
    for (const char *button : {"Evaluate", "Integrate"}) {
        desk.click(button);
        EXPECT_EQ(text().rfind("Compilling.Error: cannot track results.\n", 0), 0U) << text();
        EXPECT_FALSE(flagged(vimbo::ui_flag::eval_running));
    }
    vimbo::await_command_end(desk.app().evaluation.eval_job.pipe);
    EXPECT_EQ(vimbo::close_command(desk.app().evaluation.eval_job.pipe), 3);
}

TEST_F(Refusal, OfTheStatisticsToolLeavesClearedCharts)
{
    desk.click("↻");
    ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
    refused.process = true;
    desk.click("↻");
    ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
    EXPECT_EQ(desk.app().statistics.run.stats_moves[0], 0.5F) << "as a tool that prints nothing";
    expect_working();
}

TEST_F(Refusal, OfTheStatisticsThreadLeavesNothingRunning)
{
    desk.click("↻");
    ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
    refused.thread = true;
    desk.click("↻");
    EXPECT_FALSE(flagged(vimbo::ui_flag::stats_running));
    EXPECT_EQ(desk.app().statistics.run.stats_locality[0], 0.0F);
    EXPECT_EQ(desk.app().statistics.run.stats_directions[0], 0.0F);
    EXPECT_EQ(desk.app().statistics.run.stats_moves[0], 0.5F);
    EXPECT_EQ(desk.app().statistics.run.stats_job.pipe, nullptr);
    EXPECT_TRUE(wait_until([] {
        vimbo::collect_released_commands();
        return children_of(getpid()) == 0;
    })) << "its tool was left behind";
    expect_working();
}

class DeleteButton : public Refusal
{
protected:
    void SetUp() override
    {
        write_file(tools.file("source"), "text");
        vimbo::open_source(desk.app().bar, desk.app().editor, tools.file("source").c_str());
        desk.click("-");
        ASSERT_TRUE(flagged(vimbo::ui_flag::delete_armed));
    }
};

TEST_F(DeleteButton, IsArmedThreeSecondsLong)
{
    clock_stands = desk.app().bar.delete_armed_at + 3;
    desk.click("!");
    EXPECT_FALSE(std::filesystem::exists(tools.file("source")));
}

TEST_F(DeleteButton, LapsesInTheFourthSecond)
{
    clock_stands = desk.app().bar.delete_armed_at + 4;
    desk.frame();
    EXPECT_FALSE(desk.find("!"));
    desk.click("-");
    EXPECT_TRUE(flagged(vimbo::ui_flag::delete_armed)) << "armed anew";
    EXPECT_TRUE(std::filesystem::exists(tools.file("source")));
}

} // namespace
