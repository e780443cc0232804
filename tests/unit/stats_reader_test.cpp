#include "stats/stats_run.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace
{

using vimbo::stats_value_count;

std::vector<float> values_of(const std::string &output)
{
    const rig::scratch_directory place;
    rig::write_file(place.file("output"), output);
    FILE *stream = std::fopen(place.file("output").c_str(), "rb");
    const auto *values = static_cast<const float *>(vimbo::stats_reader(stream));
    std::fclose(stream);
    return {values, values + stats_value_count};
}

std::string numbers(int count, const std::string &number, const std::string &separator)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += number + separator;
    return text;
}

TEST(StatsReader, TakesFiftyNumbersWhateverSeparatesThem)
{
    const std::vector<float> expected(stats_value_count, 0.5F);
    EXPECT_EQ(values_of(numbers(50, "0.5", "\n")), expected);
    values_of(numbers(50, "0.25", "\n"));
    EXPECT_EQ(values_of(numbers(50, "5e-1", " ")), expected);
}

TEST(StatsReader, KeepsTheLastRunsValuesWhereNumbersAreMissing)
{
    values_of(numbers(50, "0.25", "\n"));
    const std::vector<float> values = values_of(numbers(40, "0.75", "\n"));
    EXPECT_EQ(values[39], 0.75F);
    EXPECT_EQ(values[40], 0.25F);
    EXPECT_EQ(values[49], 0.25F);
}

TEST(StatsReader, StopsAtTheFirstWord)
{
    values_of(numbers(50, "0.25", "\n"));
    const std::vector<float> values = values_of("0.5 none 0.5");
    EXPECT_EQ(values[0], 0.5F);
    EXPECT_EQ(values[1], 0.25F);
    EXPECT_EQ(values[2], 0.25F);
}

TEST(StatsReader, IgnoresWhatFollowsTheLastNumber)
{
    EXPECT_EQ(values_of(numbers(60, "0.125", "\n")), std::vector<float>(stats_value_count, 0.125F));
}

TEST(StatsReader, EndsAtOnceWithoutAStream)
{
    values_of(numbers(50, "0.25", "\n"));
    EXPECT_EQ(static_cast<const float *>(vimbo::stats_reader(nullptr))[0], 0.25F);
}

} // namespace
