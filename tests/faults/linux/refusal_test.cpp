// What the program makes of a system that refuses: no pipe, no process, no
// thread.
#include "tests/faults/system_calls.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/panel_rig.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <regex>

namespace
{

using namespace rig;
using vimbo::has_flag;

class Refusal : public testing::Test
{
protected:
    Refusal()
    {
        refused = {};
        clock_stands = 0;
        vimbo::app_state &app = panels.app();
        app.frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::stats_shown;
        panels.frame();
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
        return has_flag(panels.app().frame.ui_flags, bit);
    }

    bool finish(std::uint32_t running_bit)
    {
        return wait_until([&] {
            if (flagged(running_bit))
                panels.frame();
            return !flagged(running_bit);
        });
    }

    std::string text()
    {
        return panels.app().evaluation.eval_text;
    }

    // Everything works again once the system does.
    void expect_working()
    {
        refused = {};
        panels.click("Evaluate");
        ASSERT_TRUE(finish(vimbo::ui_flag::eval_running));
        EXPECT_TRUE(std::regex_match(
            text(), std::regex("Compilling\\.+\nEvaluation:\noutput\nStatus: uknown\\.\n")))
            << text();
        panels.click("↻");
        ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
        EXPECT_EQ(panels.app().statistics.run.stats_moves[0], 0.5F);
    }

    const tool_path tools;
    panel_rig panels;
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

TEST_F(Refusal, OfAProcessDescriptorStillReadsTheOutputToItsEnd)
{
    refused.process_end = true;
    FILE *stream = vimbo::open_command(stub("say text exit 3").c_str());
    ASSERT_NE(stream, nullptr);
    char buffer[16] = {};
    EXPECT_EQ(std::fread(buffer, 1, sizeof buffer, stream), 4U);
    EXPECT_EQ(vimbo::close_command(stream), 3);
}

TEST_F(Refusal, OfTheEvaluatorsProcessIsReported)
{
    for (const char *button : {"Evaluate", "Integrate"}) {
        refused.process = true;
        panels.click(button);
        panels.frame();
        EXPECT_EQ(text(), "Error: cannot start the evaluator.\n");
        EXPECT_FALSE(flagged(vimbo::ui_flag::eval_running));
        EXPECT_TRUE(panels.find("Evaluate"));
    }
    expect_working();
}

TEST_F(Refusal, OfTheEvaluatorsThreadIsReportedAndEndsEvaluation)
{
    refused.thread = true;
    panels.click("Evaluate");
    refused.thread = false;
    EXPECT_EQ(text().rfind("Compilling.Error: cannot track results.\n", 0), 0U) << text();
    EXPECT_FALSE(flagged(vimbo::ui_flag::eval_running));
    const std::size_t shown = text().size();
    panels.frame();
    EXPECT_EQ(text().size(), shown + 1) << "the dots go on";
    EXPECT_TRUE(panels.find("Evaluate"));
    EXPECT_TRUE(panels.find("Integrate"));
    for (const char *button : {"Evaluate", "Integrate"}) {
        panels.click(button);
        EXPECT_EQ(text().rfind("Compilling.Error: cannot track results.\n", 0), 0U) << text();
        EXPECT_FALSE(flagged(vimbo::ui_flag::eval_running));
    }
    vimbo::await_command_end(panels.app().evaluation.eval_job.pipe);
    EXPECT_EQ(vimbo::close_command(panels.app().evaluation.eval_job.pipe), 3);
}

TEST_F(Refusal, OfTheStatisticsProcessLeavesClearedCharts)
{
    panels.click("↻");
    ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
    refused.process = true;
    panels.click("↻");
    ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
    EXPECT_EQ(panels.app().statistics.run.stats_moves[0], 0.5F) << "as a tool that prints nothing";
    expect_working();
}

TEST_F(Refusal, OfTheStatisticsThreadLeavesNothingRunning)
{
    panels.click("↻");
    ASSERT_TRUE(finish(vimbo::ui_flag::stats_running));
    refused.thread = true;
    panels.click("↻");
    EXPECT_FALSE(flagged(vimbo::ui_flag::stats_running));
    EXPECT_EQ(panels.app().statistics.run.stats_locality[0], 0.0F);
    EXPECT_EQ(panels.app().statistics.run.stats_directions[0], 0.0F);
    EXPECT_EQ(panels.app().statistics.run.stats_moves[0], 0.5F);
    EXPECT_EQ(panels.app().statistics.run.stats_job.pipe, nullptr);
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
        vimbo::open_source(panels.app().bar, panels.app().editor, tools.file("source").c_str());
        panels.click("-");
        ASSERT_TRUE(flagged(vimbo::ui_flag::delete_armed));
    }
};

TEST_F(DeleteButton, IsArmedThreeSecondsLong)
{
    clock_stands = panels.app().bar.delete_armed_at + 3;
    panels.click("!");
    EXPECT_FALSE(std::filesystem::exists(tools.file("source")));
}

TEST_F(DeleteButton, LapsesInTheFourthSecond)
{
    clock_stands = panels.app().bar.delete_armed_at + 4;
    panels.frame();
    EXPECT_FALSE(panels.find("!"));
    panels.click("-");
    EXPECT_TRUE(flagged(vimbo::ui_flag::delete_armed)) << "armed anew";
    EXPECT_TRUE(std::filesystem::exists(tools.file("source")));
}

} // namespace
