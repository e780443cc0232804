// The two readers on threads of their own, behind real pipes, as the panels run
// them.
#include "jobs/command_job.hpp"
#include "jobs/eval_reader.hpp"
#include "stats/stats_run.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"
#include "ui/flags.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <string>
#include <vector>

namespace
{

using namespace rig;
using vimbo::command_job;
using vimbo::ui_flag::eval_running;

// A job from its start to its taken end.
class background_run
{
public:
    background_run(const std::string &command, vimbo::reader_function reader)
    {
        job.pipe = vimbo::open_command(command.c_str());
        EXPECT_NE(job.pipe, nullptr);
        EXPECT_TRUE(vimbo::start_job_reader(job, reader, flags, eval_running));
        EXPECT_TRUE(vimbo::has_flag(flags, eval_running));
        EXPECT_FALSE(vimbo::is_idle(job, flags, eval_running));
    }

    bool ended()
    {
        return vimbo::poll_job(job, result);
    }

    bool ends()
    {
        return wait_until([this] { return ended(); }, std::chrono::seconds(60));
    }

    command_job job = {};
    void *result = nullptr;
    std::uint32_t flags = 0;
};

std::string letters(std::size_t count)
{
    std::string text(count, ' ');
    for (std::size_t i = 0; i < count; ++i)
        text[i] = static_cast<char>('a' + i % 26);
    return text;
}

// What the output box should show of so many letters.
std::string laid_out(std::size_t count)
{
    const std::string text = letters(std::min<std::size_t>(count, 15UL * 255));
    std::string lines;
    for (std::size_t at = 0; at < text.size(); at += 255)
        lines += text.substr(at, 255) + '\n';
    return lines;
}

struct evaluation {
    std::string text;
    int status;
};

evaluation evaluate(const std::string &command)
{
    background_run run(command, vimbo::eval_reader);
    if (!run.ends())
        return {"never ended", -2};
    return {static_cast<const char *>(run.result), vimbo::close_command(run.job.pipe)};
}

TEST(EvaluatorsReader, ReturnsNothingOfASilentTool)
{
    const evaluation result = evaluate(stub("exit 0"));
    EXPECT_EQ(result.text, "");
    EXPECT_EQ(result.status, 0);
}

TEST(EvaluatorsReader, FormatsOutputOfEveryLength)
{
    for (const std::size_t count : {1, 254, 255, 256, 600, 3824, 3825, 3826, 4095}) {
        const evaluation result = evaluate(stub("write " + std::to_string(count)));
        EXPECT_EQ(result.text, laid_out(count)) << count << " bytes";
        EXPECT_EQ(result.status, 0);
    }
}

TEST(EvaluatorsReader, MarksWhereFullOutputWasCut)
{
    for (const std::size_t count : {4096, 4097, 10000000}) {
        const evaluation result = evaluate(stub("write " + std::to_string(count) + " exit 1"));
        EXPECT_EQ(result.text, laid_out(3825) + "...\n") << count << " bytes";
        EXPECT_EQ(result.status, 1) << "a chatty tool has to end with its own status";
    }
}

TEST(EvaluatorsReader, LeavesNothingOfTheFormerRun)
{
    evaluate(stub("write 4096"));
    EXPECT_EQ(evaluate(stub("say b")).text, "b\n");
    EXPECT_EQ(evaluate(stub("exit 0")).text, "");
}

TEST(EvaluatorsReader, CollectsOutputThatComesInPieces)
{
    const scratch_directory place;
    background_run run(stub("say one await " + place.file("go") + " say two"), vimbo::eval_reader);
    EXPECT_FALSE(run.ended());
    write_file(place.file("go"), "");
    ASSERT_TRUE(run.ends());
    EXPECT_STREQ(static_cast<const char *>(run.result), "onetwo\n");
    EXPECT_EQ(vimbo::close_command(run.job.pipe), 0);
}

TEST(EvaluatorsReader, PassesEveryExitStatusOn)
{
    for (const int code : {0, 1, 3, 127})
        EXPECT_EQ(evaluate(stub("say x exit " + std::to_string(code))).status, code);
    EXPECT_EQ(evaluate(stub("say x exit -1")).status, -1);
    EXPECT_EQ(evaluate(stub("say x die 15")).status, status_of_killed(15));
    EXPECT_EQ(evaluate(stub("say x die 15")).text, "x\n");
}

TEST(EvaluatorsReader, StaysWithAToolThatClosedItsOutputAndLivesOn)
{
    const scratch_directory place;
    background_run run(
        stub("say x shut touch " + place.file("shut") + " await " + place.file("go") + " exit 3"),
        vimbo::eval_reader);
    ASSERT_TRUE(wait_until([&] { return std::filesystem::exists(place.file("shut")); }));
    EXPECT_FALSE(run.ended()) << "taking the status would now hold the window up";
    write_file(place.file("go"), "");
    ASSERT_TRUE(run.ends());
    EXPECT_STREQ(static_cast<const char *>(run.result), "x\n");
    EXPECT_EQ(vimbo::close_command(run.job.pipe), 3);
}

TEST(EvaluatorsReader, DoesNotWaitForAProcessThatHoldsThePipe)
{
    const scratch_directory place;
    const evaluation result = evaluate(stub("say x leave " + place.file("go") + " exit 0"));
    EXPECT_EQ(result.text, "x\n");
    EXPECT_EQ(result.status, 0);
    write_file(place.file("go"), "");
}

TEST(EvaluatorsReader, EndsAtOnceWithoutAStream)
{
    evaluate(stub("say before"));
    EXPECT_STREQ(static_cast<const char *>(vimbo::eval_reader(nullptr)), "");
}

std::vector<float> measure(const std::string &command)
{
    background_run run(command, vimbo::stats_reader);
    if (!run.ends())
        return {};
    vimbo::release_command(run.job.pipe);
    const auto *values = static_cast<const float *>(run.result);
    return {values, values + vimbo::stats_value_count};
}

std::vector<float> fifty(float value)
{
    return std::vector<float>(vimbo::stats_value_count, value);
}

class StatisticsReader : public testing::Test
{
protected:
    // What the readers kept of other tests is not this one's.
    void SetUp() override
    {
        ASSERT_EQ(measure(stub("numbers 50 0.25")), fifty(0.25F));
    }
};

TEST_F(StatisticsReader, TakesFiftyNumbersBeTheyOnOneLineOrMany)
{
    EXPECT_EQ(measure(stub("numbers 50 0.5")), fifty(0.5F));
    std::string line;
    for (int i = 0; i < 50; ++i)
        line += "7.5e-1 \t";
    EXPECT_EQ(measure(stub("say '" + line + "'")), fifty(0.75F));
}

TEST_F(StatisticsReader, KeepsTheOldValuesBehindFortyNumbers)
{
    std::vector<float> expected = fifty(0.25F);
    std::fill_n(expected.begin(), 40, 0.5F);
    EXPECT_EQ(measure(stub("numbers 40 0.5")), expected);
}

TEST_F(StatisticsReader, KeepsAllOldValuesOfASilentToolAndOfWords)
{
    EXPECT_EQ(measure(stub("exit 1")), fifty(0.25F));
    EXPECT_EQ(measure(stub("say 'no mosaic here' exit 1")), fifty(0.25F));
    EXPECT_EQ(measure(stub("die 9")), fifty(0.25F));
    EXPECT_EQ(measure(missing_tool()), fifty(0.25F));
}

TEST_F(StatisticsReader, ReadsAnUnfinishedNumberAsFarAsItGoes)
{
    std::vector<float> expected = fifty(0.25F);
    expected[0] = 0.5F;
    expected[1] = 12.0F;
    EXPECT_EQ(measure(stub("say '0.5 12.'")), expected);
    EXPECT_EQ(measure(stub("say '0.5 -'")), expected) << "a sign alone is no number";
}

TEST_F(StatisticsReader, TakesNanInfinityAndHexadecimals)
{
    const std::vector<float> values = measure(stub("say 'nan inf -inf 1e30 1e300 0x10'"));
    EXPECT_TRUE(std::isnan(values[0]));
    EXPECT_EQ(values[1], INFINITY);
    EXPECT_EQ(values[2], -INFINITY);
    EXPECT_EQ(values[3], 1e30F);
    EXPECT_EQ(values[4], INFINITY);
    EXPECT_EQ(values[5], 16.0F);
}

TEST_F(StatisticsReader, ReadsNothingBehindTheFiftiethNumber)
{
    EXPECT_EQ(measure(stub("numbers 50 0.5 numbers 50 0.75")), fifty(0.5F));
    EXPECT_EQ(measure(stub("numbers 50 0.5 write 10000000")), fifty(0.5F));
}

TEST_F(StatisticsReader, LeavesAToolThatLivesOn)
{
    const scratch_directory place;
    EXPECT_EQ(measure(stub("numbers 50 0.75 say next await " + place.file("go"))), fifty(0.75F));
    write_file(place.file("go"), "");
    EXPECT_TRUE(wait_until([] {
        vimbo::collect_released_commands();
        return children_of(getpid()) == 0;
    }));
}

TEST_F(StatisticsReader, LeavesAToolThatClosedItsOutput)
{
    const scratch_directory place;
    EXPECT_EQ(measure(stub("numbers 50 0.5 shut await " + place.file("go"))), fifty(0.5F));
    write_file(place.file("go"), "");
    EXPECT_TRUE(wait_until([] {
        vimbo::collect_released_commands();
        return children_of(getpid()) == 0;
    }));
}

TEST_F(StatisticsReader, StaysWithAToolThatNeverEnds)
{
    const scratch_directory place;
    background_run run(
        stub("numbers 10 0.5 touch " + place.file("begun") + " await " + place.file("go")),
        vimbo::stats_reader);
    ASSERT_TRUE(wait_until([&] { return std::filesystem::exists(place.file("begun")); }));
    EXPECT_FALSE(run.ended());
    write_file(place.file("go"), "");
    EXPECT_TRUE(run.ends());
    vimbo::release_command(run.job.pipe);
}

TEST_F(StatisticsReader, LeavesAToolThatPrintsForever)
{
    const scratch_directory place;
    background_run run(stub("numbers 50 0.5 say end flood " + place.file("end")),
                       vimbo::stats_reader);
    ASSERT_TRUE(run.ends());
    EXPECT_EQ(static_cast<const float *>(run.result)[49], 0.5F);
    vimbo::release_command(run.job.pipe);
    write_file(place.file("end"), "");
}

} // namespace
