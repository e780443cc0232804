// The Statistics panel: the command, the run, the charts and their labels.
#include "tests/support/child_watch.hpp"
#include "tests/support/panel_rig.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using namespace rig;
using vimbo::has_flag;

constexpr const char *locality = "Locality r̿(k) = |pₖ-p₀|/∑ₖ₌₍₀,₃₂₎|pₖ₊₁-pₖ|";
constexpr const char *directions = "Mark directions ∑l(φ) / L";
constexpr const char *moves = "Mark / jump moves l(on/off)/L";

bool is(const struct nk_color &colour, int red, int green, int blue)
{
    return colour.r == red && colour.g == green && colour.b == blue && colour.a == 255;
}

class StatisticsPanel : public testing::Test
{
protected:
    StatisticsPanel()
    {
        panels.app().frame.ui_flags |= vimbo::ui_flag::stats_shown;
        panels.frame(); // its column is there from the next frame on
    }

    ~StatisticsPanel() override
    {
        write_file(tools.file("go"), "");
        panels.app().frame.ui_flags |= vimbo::ui_flag::stats_shown;
        finish();
        wait_until([] {
            vimbo::collect_released_commands();
            return children_of(getpid()) == 0;
        });
    }

    vimbo::stats_run_state &run()
    {
        return panels.app().statistics.run;
    }

    bool running()
    {
        return has_flag(panels.app().frame.ui_flags, vimbo::ui_flag::stats_running);
    }

    bool finish()
    {
        return wait_until([this] {
            if (running())
                panels.frame();
            return !running();
        });
    }

    bool measure()
    {
        panels.click("↻");
        return finish();
    }

    // The list is narrower than its longest item.
    void choose(std::string_view shown, std::string_view wanted)
    {
        panels.click(shown);
        std::string item;
        for (const drawn_text &text : panels.texts())
            if (wanted.starts_with(text.text) && text.text.size() > 10)
                item = text.text;
        panels.click(item);
        panels.frame();
    }

    // What is filled in the charts' own colour: columns, or a line's points.
    std::vector<struct nk_rect> values_drawn(int red = 255, int green = 255, int blue = 255)
    {
        std::vector<struct nk_rect> found;
        for (const drawn_rectangle &box : panels.rectangles())
            if (is(box.colour, red, green, blue))
                found.push_back(box.bounds);
        return found;
    }

    // The pieces of a chart's line.
    std::vector<drawn_line> curve_drawn()
    {
        std::vector<drawn_line> found;
        for (const drawn_line &line : panels.lines())
            if (is(line.colour, 255, 255, 255))
                found.push_back(line);
        return found;
    }

    // All values of all charts, and a frame with them.
    void fill_charts(float value)
    {
        std::ranges::fill(run().stats_locality, value);
        std::ranges::fill(run().stats_directions, value);
        std::ranges::fill(run().stats_moves, value);
        panels.frame();
    }

    struct nk_rect chart()
    {
        const std::vector<struct nk_rect> found = values_drawn(110, 142, 190);
        EXPECT_EQ(found.size(), 1U) << "the chart's background";
        return found.empty() ? nk_rect(0, 0, 0, 0) : found[0];
    }

    std::vector<std::string> texts_below(float y)
    {
        std::vector<std::string> found;
        for (const drawn_text &text : panels.texts())
            if (text.bounds.y >= y && text.text != "-" && text.text != "|")
                found.push_back(text.text);
        return found;
    }

    const tool_path tools;
    panel_rig panels;
};

TEST_F(StatisticsPanel, MeasuresTheCurrentMosaic)
{
    tools.put("plimb", "numbers 50 0.5");
    panels.app().mosaic.mosaic_index = 3;
    ASSERT_TRUE(measure());
    EXPECT_EQ(tools.arguments_of("plimb"), ".//_mosaics/3.mmv\n");
}

TEST_F(StatisticsPanel, TakesATrayWithABlank)
{
    tools.put("plimb", "numbers 50 0.5");
    vimbo::choose_tray(panels.app().frame, panels.app().mosaic, "./a tray; with 'more'");
    ASSERT_TRUE(measure());
    EXPECT_EQ(tools.arguments_of("plimb"), "./a tray; with 'more'/_mosaics/0.mmv\n");
}

TEST_F(StatisticsPanel, FillsItsThreeChartsInTheNumbersOrder)
{
    tools.put("plimb", "numbers 31 0.25 numbers 1 0.375 numbers 15 0.5 numbers 1 0.625 numbers 1 "
                       "0.75 numbers 1 1");
    ASSERT_TRUE(measure());
    EXPECT_EQ(run().stats_locality[0], 0.25F);
    EXPECT_EQ(run().stats_locality[31], 0.375F);
    EXPECT_EQ(run().stats_directions[0], 0.5F);
    EXPECT_EQ(run().stats_directions[15], 0.625F);
    EXPECT_EQ(run().stats_moves[0], 0.75F);
    EXPECT_EQ(run().stats_moves[1], 1.0F);
}

TEST_F(StatisticsPanel, ClearsTwoChartsAtTheStartAndKeepsTheThird)
{
    tools.put("plimb", "numbers 50 0.5");
    ASSERT_TRUE(measure());
    tools.put("plimb", "await " + tools.file("go") + " numbers 50 0.75");
    panels.click("↻");
    ASSERT_TRUE(running());
    EXPECT_EQ(run().stats_locality[31], 0.0F);
    EXPECT_EQ(run().stats_directions[15], 0.0F);
    EXPECT_EQ(run().stats_moves[0], 0.5F);
    EXPECT_EQ(run().stats_moves[1], 0.5F);
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    EXPECT_EQ(run().stats_locality[31], 0.75F);
    EXPECT_EQ(run().stats_moves[1], 0.75F);
}

TEST_F(StatisticsPanel, KeepsTheOldFiguresOfAToolThatFails)
{
    tools.put("plimb", "numbers 50 0.5");
    ASSERT_TRUE(measure());
    tools.put("plimb", "exit 1");
    ASSERT_TRUE(measure());
    EXPECT_EQ(run().stats_locality[0], 0.5F);
    EXPECT_EQ(run().stats_directions[0], 0.5F);
    EXPECT_EQ(run().stats_moves[0], 0.5F);
}

TEST_F(StatisticsPanel, ShowsASpinnerForTheButtonWhileItRuns)
{
    tools.put("plimb", "await " + tools.file("go") + " numbers 50 0.5");
    panels.click("↻");
    panels.app().statistics.stats_spinner = 0;
    const std::vector<std::string> expected = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█",
                                               "▇", "▆", "▅", "▄", "▃", "▂", "▁", " "};
    for (std::size_t i = 0; i < 2 * expected.size(); ++i) {
        panels.frame();
        EXPECT_FALSE(panels.find("↻"));
        EXPECT_TRUE(panels.find(expected[i % expected.size()])) << "frame " << i;
    }
    EXPECT_EQ(panels.app().statistics.stats_spinner, 32U);
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    panels.frame();
    EXPECT_TRUE(panels.find("↻"));
}

TEST_F(StatisticsPanel, TakesTheNumbersOnlyWhenItIsOpenedAgain)
{
    tools.put("plimb", "await " + tools.file("go") + " numbers 50 0.5 touch " + tools.file("end"));
    panels.click("↻");
    panels.click("|");
    const std::uint32_t turned = panels.app().statistics.stats_spinner;
    write_file(tools.file("go"), "");
    ASSERT_TRUE(wait_until([this] { return std::filesystem::exists(tools.file("end")); }));
    for (int i = 0; i < 20; ++i)
        panels.frame();
    EXPECT_TRUE(running());
    EXPECT_EQ(run().stats_locality[0], 0.0F);
    EXPECT_EQ(panels.app().statistics.stats_spinner, turned);
    panels.click("|");
    ASSERT_TRUE(finish());
    EXPECT_EQ(run().stats_locality[0], 0.5F);
}

TEST_F(StatisticsPanel, MeasuresTheMosaicThatWasCurrentAtTheClick)
{
    tools.put("plimb", "await " + tools.file("go") + " numbers 50 0.5");
    panels.click("↻");
    panels.app().mosaic.mosaic_index = 6;
    write_file(tools.file("go"), "");
    ASSERT_TRUE(finish());
    EXPECT_EQ(tools.arguments_of("plimb"), ".//_mosaics/0.mmv\n");
}

TEST_F(StatisticsPanel, LabelsTheLocalityChart)
{
    panels.frame();
    EXPECT_TRUE(panels.find(locality));
    EXPECT_EQ(texts_below(chart().y + chart().h),
              (std::vector<std::string>{"k", "1", "16", "32", " "}));
    for (const char *label : {"1.0", "0.5", "0.0"})
        EXPECT_TRUE(panels.find(label)) << label;
    EXPECT_LT(panels.find("1.0")->y, panels.find("0.5")->y);
    EXPECT_LT(panels.find("0.5")->y, panels.find("0.0")->y);
}

TEST_F(StatisticsPanel, HasItsScaleBesideTheChartFromTopToBottom)
{
    panels.frame();
    const struct nk_rect area = chart();
    const int top = panels.find("1.0")->y;
    const int middle = panels.find("0.5")->y;
    const int bottom = panels.find("0.0")->y;
    EXPECT_NEAR(static_cast<float>(top), area.y, 24);
    EXPECT_NEAR(static_cast<float>(middle), area.y + area.h / 2, 24);
    EXPECT_NEAR(static_cast<float>(bottom), area.y + area.h, 24);
    EXPECT_EQ(bottom - middle, middle - top) << "the gaps differ";
    EXPECT_EQ(middle - top, 24 + 152 + 2 * 4) << "a label, a gap, and what lies between rows";
}

TEST_F(StatisticsPanel, TakesFortyNumbersAndKeepsTheOtherTenOfTheRunBefore)
{
    tools.put("plimb", "numbers 50 0.25");
    ASSERT_TRUE(measure());
    tools.put("plimb", "numbers 40 0.5");
    ASSERT_TRUE(measure());
    EXPECT_EQ(run().stats_locality[31], 0.5F);
    EXPECT_EQ(run().stats_directions[7], 0.5F);
    EXPECT_EQ(run().stats_directions[8], 0.25F);
    EXPECT_EQ(run().stats_moves[0], 0.25F);
    EXPECT_EQ(run().stats_moves[1], 0.25F);
}

TEST_F(StatisticsPanel, LabelsTheDirectionChart)
{
    choose(locality, directions);
    EXPECT_EQ(panels.app().statistics.stats_chart, 1);
    EXPECT_EQ(
        texts_below(chart().y + chart().h),
        (std::vector<std::string>{"φ", "-5Ψ/6", "-3Ψ/4", "-2Ψ/3", "-Ψ/2", "-Ψ/3", "-Ψ/4", "-Ψ/6",
                                  "0", "Ψ/6", "Ψ/4", "Ψ/3", "Ψ/2", "2Ψ/3", "3Ψ/4", "5Ψ/6", "Ψ"}));
}

TEST_F(StatisticsPanel, LabelsTheChartOfMoves)
{
    choose(locality, moves);
    EXPECT_EQ(panels.app().statistics.stats_chart, 2);
    EXPECT_EQ(texts_below(chart().y + chart().h), (std::vector<std::string>{"I", "Dark", "Light"}));
    choose(moves, locality);
    EXPECT_EQ(panels.app().statistics.stats_chart, 0);
}

TEST_F(StatisticsPanel, DrawsOneColumnForEachDirection)
{
    panels.app().statistics.stats_chart = 1;
    for (std::size_t i = 0; i < 16; ++i)
        run().stats_directions[i] = static_cast<float>(i + 1) / 16.0F;
    panels.frame();
    const struct nk_rect area = chart();
    const std::vector<struct nk_rect> columns = values_drawn();
    ASSERT_EQ(columns.size(), 16U);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(columns[i].h, run().stats_directions[i] * columns[15].h, 2) << "column " << i;
        EXPECT_GT(columns[i].x, i > 0 ? columns[i - 1].x : 0) << "column " << i;
    }
    EXPECT_NEAR(columns[15].y, area.y, 12) << "1.0 reaches the top";
    for (const struct nk_rect &column : columns)
        EXPECT_NEAR(column.y + column.h, area.y + area.h, 12) << "0.0 lies at the bottom";
}

TEST_F(StatisticsPanel, DrawsMarksAndJumpsAsTwoColumns)
{
    panels.app().statistics.stats_chart = 2;
    run().stats_moves[0] = 1.0F;
    run().stats_moves[1] = 0.5F;
    panels.frame();
    const std::vector<struct nk_rect> columns = values_drawn();
    ASSERT_EQ(columns.size(), 2U);
    EXPECT_NEAR(columns[0].h, 2 * columns[1].h, 2);
    EXPECT_NEAR(static_cast<float>(panels.find("Dark")->x), columns[0].x + columns[0].w / 2, 20);
    EXPECT_NEAR(static_cast<float>(panels.find("Light")->x), columns[1].x + columns[1].w / 2, 20);
}

TEST_F(StatisticsPanel, DrawsAValueAtItsHeightWhateverTheOthersAre)
{
    for (const int index : {0, 1, 2}) {
        panels.app().statistics.stats_chart = index;
        fill_charts(0.5F);
        const std::vector<struct nk_rect> equals = values_drawn();
        ASSERT_GE(equals.size(), 2U) << "chart " << index;
        // The last one, as a line's point so far up is not drawn.
        for (float *last :
             {&run().stats_locality[31], &run().stats_directions[15], &run().stats_moves[1]})
            *last = 7.0F;
        panels.frame();
        const std::vector<struct nk_rect> beside_a_large_one = values_drawn();
        for (std::size_t i = 0; i + 1 < equals.size(); ++i) {
            EXPECT_EQ(beside_a_large_one[i].y, equals[i].y) << "chart " << index << " value " << i;
            EXPECT_EQ(beside_a_large_one[i].h, equals[i].h) << "chart " << index << " value " << i;
        }
        if (index != 0) {
            EXPECT_NEAR(beside_a_large_one.back().h, 14 * equals[0].h, 14)
                << "7.0 is not 14 times as high as 0.5 in chart " << index;
        }
    }
}

TEST_F(StatisticsPanel, DrawsTheLocalityCurveFromItsValuesBetweenZeroAndOne)
{
    const float values[] = {0.0F, 1.0F, 0.5F, 0.25F};
    std::ranges::copy(values, run().stats_locality);
    panels.frame();
    const struct nk_rect area = chart();
    const std::vector<drawn_line> curve = curve_drawn();
    ASSERT_EQ(curve.size(), 31U) << "pieces between 32 points";
    const float zero = static_cast<float>(curve[0].from.y);
    const float one = static_cast<float>(curve[0].to.y);
    EXPECT_NEAR(zero, area.y + area.h, 12) << "0.0 lies at the bottom";
    EXPECT_NEAR(one, area.y, 12) << "1.0 reaches the top";
    EXPECT_NEAR(static_cast<float>(curve[1].to.y), (zero + one) / 2, 2) << "0.5";
    EXPECT_NEAR(static_cast<float>(curve[2].to.y), zero + (one - zero) / 4, 2) << "0.25";
    EXPECT_NEAR(static_cast<float>(curve[30].to.x), area.x + area.w, 32) << "the last value";
}

TEST_F(StatisticsPanel, ShowsTheValueUnderThePointer)
{
    panels.app().statistics.stats_chart = 2;
    run().stats_moves[0] = 1.0F;
    run().stats_moves[1] = 0.25F;
    panels.frame();
    EXPECT_FALSE(panels.find("0.250000"));
    const struct nk_rect column = values_drawn()[1];
    panels.move({static_cast<int>(column.x + column.w / 2), static_cast<int>(column.y + 5)});
    panels.frame();
    panels.frame();
    EXPECT_TRUE(panels.find("0.250000"));
    EXPECT_EQ(values_drawn(217, 166, 115).size(), 1U) << "the column under the pointer";
}

TEST_F(StatisticsPanel, ShowsALocalityPointsValue)
{
    for (float &value : run().stats_locality)
        value = 0.5F;
    run().stats_locality[7] = 0.25F;
    panels.frame();
    const std::vector<struct nk_rect> points = values_drawn();
    ASSERT_EQ(points.size(), 32U);
    panels.move({static_cast<int>(points[7].x + points[7].w / 2),
                 static_cast<int>(points[7].y + points[7].h / 2)});
    panels.frame();
    panels.frame();
    EXPECT_TRUE(panels.find("0.250000"));
}

TEST_F(StatisticsPanel, DrawsNanAtZeroAndWhatIsFarOffNoFartherThan64)
{
    tools.put("plimb", "say '0 1 64 -64 inf -inf 1e30 -1e30 1e300 nan'");
    ASSERT_TRUE(measure());
    ASSERT_TRUE(std::isnan(run().stats_locality[9]));
    panels.frame();
    const std::vector<drawn_line> curve = curve_drawn();
    ASSERT_EQ(curve.size(), 31U);
    const auto row_of = [&](std::size_t i) { return i == 0 ? curve[0].from.y : curve[i - 1].to.y; };
    EXPECT_NEAR(row_of(0) - row_of(2), 64 * (row_of(0) - row_of(1)), 64) << "64 is drawn as it is";
    EXPECT_EQ(row_of(4), row_of(2)) << "infinity";
    EXPECT_EQ(row_of(5), row_of(3)) << "negative infinity";
    EXPECT_EQ(row_of(6), row_of(2)) << "1e30";
    EXPECT_EQ(row_of(7), row_of(3)) << "-1e30";
    EXPECT_EQ(row_of(8), row_of(2)) << "1e300";
    EXPECT_EQ(row_of(9), row_of(0)) << "NaN";
}

TEST_F(StatisticsPanel, ShowsAValueThatIsNoNumberAsItWasRead)
{
    panels.app().statistics.stats_chart = 1;
    run().stats_directions[3] = std::numeric_limits<float>::infinity();
    panels.frame();
    const std::vector<struct nk_rect> columns = values_drawn();
    ASSERT_EQ(columns.size(), 1U) << "the other columns have no height";
    panels.move({static_cast<int>(columns[0].x + columns[0].w / 2), 300});
    panels.frame();
    panels.frame();
    EXPECT_TRUE(panels.find("inf"));
}

TEST_F(StatisticsPanel, LeavesNothingBehindAfterManyRuns)
{
    tools.put("plimb", "numbers 50 0.5");
    ASSERT_TRUE(measure());
    ASSERT_TRUE(wait_until([] {
        vimbo::collect_released_commands();
        return children_of(getpid()) == 0;
    }));
    const std::size_t descriptors = open_descriptors(getpid());
    const std::size_t threads = threads_of(getpid());
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(measure());
    EXPECT_TRUE(wait_until([&] {
        vimbo::collect_released_commands();
        return open_descriptors(getpid()) == descriptors && children_of(getpid()) == 0;
    }));
    EXPECT_EQ(threads_of(getpid()), threads);
}

} // namespace
