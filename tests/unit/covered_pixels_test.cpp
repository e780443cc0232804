#include "render/covered_pixels.hpp"

#include "tests/support/hidden.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace
{

using vimbo::covered_pixels;
using vimbo::pixel_box;
using vimbo::pixel_range;

constexpr std::uint32_t near_by = 0;
constexpr std::uint32_t far_away = 100;

class CoveredPixels : public testing::Test
{
protected:
    void start(int width, int height)
    {
        clear_covered(covered, width, height);
    }

    void look_at(const pixel_range &range, const std::vector<std::uint32_t> &depths)
    {
        begin_look(covered, range);
        const auto width =
            static_cast<std::size_t>(range.right) - static_cast<std::size_t>(range.left) + 1;
        for (int row = range.bottom; row <= range.top; ++row)
            see_row(covered, row, range.left,
                    std::span(depths).subspan(static_cast<std::size_t>(row - range.bottom) * width,
                                              width),
                    far_away);
    }

    void cover(int column, int row)
    {
        look_at({column, row, column, row}, {near_by});
    }

    const std::unique_ptr<covered_pixels> memory = std::make_unique<covered_pixels>();
    covered_pixels &covered = *memory;
};

TEST_F(CoveredPixels, AreThoseWhoseDiamondsLinesCanMeet)
{
    start(200, 10);
    const pixel_box in_one_diamond = {70.4, 3.4, 70.6, 3.6};
    EXPECT_FALSE(rig::is_hidden(covered, in_one_diamond));
    cover(70, 3);
    EXPECT_TRUE(rig::is_hidden(covered, in_one_diamond));
    // The end of a line along the row: it reaches into the next pixel's square, but
    // not into its diamond.
    EXPECT_TRUE(rig::is_hidden(covered, {70.3, 3.1, 71.05, 3.2}));
    EXPECT_FALSE(rig::is_hidden(covered, {70.3, 3.4, 71.1, 3.6})) << "that is near its centre";
    cover(71, 3);
    EXPECT_TRUE(rig::is_hidden(covered, {70.3, 3.4, 71.1, 3.6}));
}

TEST_F(CoveredPixels, IncludeThoseWhoseDiamondsEndAtTheLine)
{
    start(200, 10);
    cover(70, 3);
    EXPECT_FALSE(rig::is_hidden(covered, {70.5, 3.5, 71.0, 3.5})) << "on the next diamond's corner";
    EXPECT_TRUE(rig::is_hidden(covered, {70.5, 3.5, 70.999, 3.5}));
}

TEST_F(CoveredPixels, HideNothingThatOneOfThemMisses)
{
    start(300, 40);
    std::vector<std::uint32_t> depths(std::size_t{300} * 40, near_by);
    const std::size_t missing = 17 * 300 + 191;
    depths[missing] = far_away;
    look_at({0, 0, 299, 39}, depths);
    EXPECT_TRUE(rig::is_hidden(covered, {0, 0, 190.9, 39}));
    EXPECT_TRUE(rig::is_hidden(covered, {0, 0, 300, 16.9}));
    EXPECT_TRUE(rig::is_hidden(covered, {192.1, 0, 300, 40}));
    EXPECT_FALSE(rig::is_hidden(covered, {0, 0, 191.5, 39}));
    EXPECT_FALSE(rig::is_hidden(covered, {191.5, 17.5, 191.5, 17.5}));
}

// By the definition: a pixel's diamond is all that is nearer to its centre than
// half a pixel, columns and rows added up.
bool is_met(const pixel_box &box, int column, int row, double reach)
{
    const auto beside = [](double at, double from, double to) {
        return std::max({from - at, at - to, 0.0});
    };
    return beside(column + 0.5, box.left, box.right) + beside(row + 0.5, box.bottom, box.top) <
           reach;
}

TEST_F(CoveredPixels, HideABoxExactlyWhenAllItsDiamondsAreCovered)
{
    constexpr int width = 130;
    constexpr int height = 9;
    std::mt19937 random(1);
    const auto up_to = [&](int limit) {
        return static_cast<double>(random() % static_cast<unsigned>(limit * 64)) / 64;
    };
    int hidden = 0;
    for (int i = 0; i < 20000; ++i) {
        start(width, height);
        std::vector<std::uint32_t> depths(std::size_t{width} * height, near_by);
        for (int missing = 0; missing < 4; ++missing)
            depths[random() % depths.size()] = far_away;
        look_at({0, 0, width - 1, height - 1}, depths);
        const double left = up_to(width + 2) - 1;
        const double bottom = up_to(height + 2) - 1;
        const pixel_box box = {left, bottom, left + up_to(70), bottom + up_to(5)};
        bool some = false;
        bool more = false;
        for (int pixel = 0; pixel < width * height; ++pixel)
            if (depths[static_cast<std::size_t>(pixel)] == far_away) {
                some = some || is_met(box, pixel % width, pixel / width, 0.5);
                more = more || is_met(box, pixel % width, pixel / width, 0.51);
            }
        const bool found = rig::is_hidden(covered, box);
        hidden += found ? 1 : 0;
        EXPECT_FALSE(found && some) << "a pixel that is not covered is taken for covered";
        EXPECT_FALSE(!found && !more) << "covered, and not known to be";
    }
    EXPECT_GT(hidden, 2000);
    EXPECT_LT(hidden, 18000);
}

TEST_F(CoveredPixels, TellWhatTheLastLookAdded)
{
    start(10, 10);
    const pixel_box box = {3.4, 3.4, 3.6, 3.6};
    cover(3, 3);
    EXPECT_TRUE(rig::is_hidden(covered, box));
    EXPECT_FALSE(rig::was_hidden(covered, box));
    cover(5, 5);
    EXPECT_TRUE(rig::is_hidden(covered, box));
    EXPECT_TRUE(rig::was_hidden(covered, box));
}

TEST_F(CoveredPixels, AreForgottenForANewPicture)
{
    start(10, 10);
    cover(3, 3);
    start(20, 5);
    EXPECT_FALSE(rig::is_hidden(covered, {3.4, 3.4, 3.6, 3.6}));
    EXPECT_FALSE(rig::was_hidden(covered, {3.4, 3.4, 3.6, 3.6}));
}

TEST_F(CoveredPixels, LieInThePictureAlone)
{
    start(100, 50);
    const auto is_empty = [&](const pixel_box &box) {
        const pixel_range range = range_of(covered, box);
        return range.right < range.left;
    };
    EXPECT_TRUE(is_empty({-20, 10, -1, 20}));
    EXPECT_TRUE(is_empty({101, 10, 120, 20}));
    EXPECT_TRUE(is_empty({10, -20, 20, -1}));
    EXPECT_TRUE(is_empty({10, 51, 20, 60}));
    EXPECT_TRUE(is_empty({-1e300, 51, 1e300, 1e300}));
    const pixel_range all = range_of(covered, {-1e300, -1e300, 1e300, 1e300});
    EXPECT_EQ(all.left, 0);
    EXPECT_EQ(all.bottom, 0);
    EXPECT_EQ(all.right, 99);
    EXPECT_EQ(all.top, 49);
    const pixel_range corner = range_of(covered, {-5, -5, 0.1, 0.1});
    EXPECT_EQ(corner.right, 0);
    EXPECT_EQ(corner.top, 0);
}

TEST_F(CoveredPixels, MayAllBeMetByABoxWithoutNumbers)
{
    start(100, 50);
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const pixel_box &box :
         {pixel_box{nan, 0, 1, 1}, {0, nan, 1, 1}, {0, 0, nan, 1}, {0, 0, 1, nan}}) {
        const pixel_range range = range_of(covered, box);
        EXPECT_EQ(range.left, 0);
        EXPECT_EQ(range.right, 99);
        EXPECT_EQ(range.bottom, 0);
        EXPECT_EQ(range.top, 49);
        EXPECT_FALSE(rig::is_hidden(covered, box));
    }
}

TEST(CoveredPixelsRoom, EndsWithTheirMemory)
{
    EXPECT_TRUE(vimbo::has_room(7680, 500));
    EXPECT_TRUE(vimbo::has_room(64, vimbo::covered_word_capacity));
    EXPECT_FALSE(vimbo::has_room(64, vimbo::covered_word_capacity + 1));
    EXPECT_FALSE(vimbo::has_room(65, vimbo::covered_word_capacity));
    EXPECT_FALSE(vimbo::has_room(INT32_MAX, INT32_MAX));
    EXPECT_FALSE(vimbo::has_room(0, 10));
    EXPECT_FALSE(vimbo::has_room(10, 0));
}

} // namespace
