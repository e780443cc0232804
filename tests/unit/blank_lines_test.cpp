#include "render/blank_lines.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace
{

using vimbo::path_vertex;

constexpr double off = 1.0 / 64;
constexpr std::uint32_t none = 0;

// Lengths are 1024ths of a pixel, and the picture's corner is the origin.
class BlankLines : public testing::Test
{
protected:
    BlankLines()
    {
        target.x = {1.0 / 1024, 0, 0, 0};
        target.y = {1.0 / 1024, 0, 0, 0};
    }

    std::uint32_t lines_of(const std::vector<std::pair<double, double>> &places,
                           double rounding = off) const
    {
        std::vector<path_vertex> strip;
        strip.reserve(places.size());
        for (const auto &[x, y] : places)
            strip.push_back(
                {static_cast<std::int32_t>(x * 1024), static_cast<std::int32_t>(y * 1024)});
        return lines_with_pixels(strip, rounding, target);
    }

    vimbo::path_projection target = {};
};

TEST_F(BlankLines, StayWithinAPixelsDiamond)
{
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.6, 3.4}}), none) << "of no length";
    EXPECT_EQ(lines_of({{7.1, 3.45}, {7.9, 3.45}}), none);
    EXPECT_EQ(lines_of({{7.55, 3.1}, {7.55, 3.9}}), none);
    EXPECT_EQ(lines_of({{7.3, 3.4}, {7.6, 3.3}}), none);
    EXPECT_EQ(lines_of({{-7.4, -3.6}, {-7.6, -3.4}}), none) << "beside the picture";
}

TEST_F(BlankLines, StayWithinAGapBetweenDiamonds)
{
    EXPECT_EQ(lines_of({{7.1, 3.1}, {7.1, 3.1}}), none);
    EXPECT_EQ(lines_of({{6.6, 3.05}, {7.4, 3.05}}), none);
    EXPECT_EQ(lines_of({{6.95, 2.6}, {6.95, 3.4}}), none);
    EXPECT_EQ(lines_of({{6.8, 3.1}, {7.2, 2.9}}), none) << "across four pixels";
}

TEST_F(BlankLines, DoNotLeaveADiamondOrEnterOne)
{
    EXPECT_EQ(lines_of({{7.6, 3.4}, {8.1, 3.4}}), 1U) << "to a gap";
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.9, 3.9}}), 1U);
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.9, 3.1}}), 1U);
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.1, 3.1}}), 1U);
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.1, 3.9}}), 1U);
    EXPECT_EQ(lines_of({{7.9, 3.9}, {7.6, 3.4}}), 1U) << "from a gap";
    EXPECT_EQ(lines_of({{7.1, 3.1}, {7.9, 3.9}}), 1U) << "from gap to gap";
    EXPECT_EQ(lines_of({{7.1, 3.9}, {7.9, 3.1}}), 1U);
    EXPECT_EQ(lines_of({{7.6, 3.4}, {9.6, 3.4}}), 1U) << "to another diamond";
}

TEST_F(BlankLines, HaveBothEndsFartherFromAnEdgeThanRoundingMovesThem)
{
    // An eighth of a pixel along both axes is a quarter towards an edge.
    for (const auto &[x, y] :
         {std::pair{7.625, 3.625}, {7.625, 3.375}, {7.375, 3.625}, {7.375, 3.375}}) {
        EXPECT_EQ(lines_of({{x, y}, {x, y}}, 0.12), none);
        EXPECT_EQ(lines_of({{x, y}, {x, y}}, 0.13), 1U);
    }
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.75, 3.25}}), 1U) << "ends on an edge";
    EXPECT_EQ(lines_of({{7.75, 3.25}, {7.6, 3.4}}), 1U) << "begins there";
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.74, 3.26}}), 1U) << "next to it";
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.73, 3.27}}), none);
    EXPECT_EQ(lines_of({{8.0, 3.5}, {8.0, 3.5}}), 1U) << "on a corner";
}

TEST_F(BlankLines, HaveNoEndOnALineThroughAPixelsMiddle)
{
    for (const double beside : {-0.01, 0.0, 0.01}) {
        EXPECT_EQ(lines_of({{7.6, 3.4}, {7.5 + beside, 3.4}}), 1U) << beside;
        EXPECT_EQ(lines_of({{7.5 + beside, 3.4}, {7.6, 3.4}}), 1U) << beside;
        EXPECT_EQ(lines_of({{7.6, 3.4}, {7.6, 3.5 + beside}}), 1U) << beside;
        EXPECT_EQ(lines_of({{7.6, 3.5 + beside}, {7.6, 3.4}}), 1U) << beside;
    }
    for (const double beside : {-0.02, 0.02}) {
        EXPECT_EQ(lines_of({{7.6, 3.4}, {7.5 + beside, 3.4}}), none) << beside;
        EXPECT_EQ(lines_of({{7.6, 3.4}, {7.6, 3.5 + beside}}), none) << beside;
    }
}

TEST_F(BlankLines, AreToldOneByOneFromTheStripsBeginning)
{
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.55, 3.4}, {8.6, 3.4}, {8.4, 3.4}, {8.4, 3.6}, {9.1, 3.1}}),
              0b10010U);
    EXPECT_EQ(lines_of({{7.6, 3.4}}), none) << "no line";
    const std::vector<std::pair<double, double>> most(vimbo::most_lines_at_once + 1, {8.0, 3.5});
    EXPECT_EQ(lines_of(most), ~none);
}

TEST_F(BlankLines, AreThoseOfAShiftedPicture)
{
    EXPECT_EQ(lines_of({{7.5, 3.1}, {7.5, 3.1}}), 1U);
    target.x.shift = 0.25;
    EXPECT_EQ(lines_of({{7.5, 3.25}, {7.5, 3.25}}), 1U) << "on an edge now";
    EXPECT_EQ(lines_of({{7.5, 3.1}, {7.5, 3.1}}), none);
    target.y.shift = 0.15;
    EXPECT_EQ(lines_of({{7.5, 3.1}, {7.5, 3.1}}), 1U);
}

TEST_F(BlankLines, AreNotTellableWhereNoPlaceIsCertain)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.6, 3.4}}, nan), 1U);
    target.y.scale = nan;
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.6, 3.4}}), 1U);
    target.y.scale = 1;
    target.y.shift = std::numeric_limits<double>::infinity();
    EXPECT_EQ(lines_of({{7.6, 3.4}, {7.6, 3.4}}), 1U);
}

} // namespace
