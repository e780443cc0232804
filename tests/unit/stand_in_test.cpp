#include "render/stand_in.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using vimbo::share_axis;
using vimbo::shared_stretch;
using vimbo::view_axis;

void expect_stretch(const shared_stretch &stretch, int from_first, int from_last, int to_first,
                    int to_last)
{
    EXPECT_FALSE(stretch.empty);
    EXPECT_EQ(stretch.from[0], from_first);
    EXPECT_EQ(stretch.from[1], from_last);
    EXPECT_EQ(stretch.to[0], to_first);
    EXPECT_EQ(stretch.to[1], to_last);
}

TEST(StandIn, OfTheSameViewIsAllOfIt)
{
    const view_axis axis = {64, 0.25, 30, 400};
    expect_stretch(share_axis(axis, axis), 30, 430, 30, 430);
}

TEST(StandIn, OfAViewThatWasPannedIsMovedByAsMuch)
{
    // A quarter of the axis is 0.5 in normalised device units.
    const shared_stretch right = share_axis({64, 0, 10, 400}, {64, 0.5, 10, 400});
    expect_stretch(right, 10, 310, 110, 410);
    EXPECT_FALSE(is_scaled(right));
    expect_stretch(share_axis({64, 0, 10, 400}, {64, -0.5, 10, 400}), 110, 410, 10, 310);
}

TEST(StandIn, OfAViewThatWasZoomedIntoIsItsMiddleEnlarged)
{
    const shared_stretch zoomed = share_axis({64, 0, 0, 400}, {128, 0, 0, 400});
    expect_stretch(zoomed, 100, 300, 0, 400);
    EXPECT_TRUE(is_scaled(zoomed));
}

TEST(StandIn, OfAViewThatWasZoomedOutOfFillsTheMiddleOfTheNewOne)
{
    expect_stretch(share_axis({64, 0, 0, 400}, {32, 0, 0, 400}), 0, 400, 100, 300);
}

TEST(StandIn, GoesWhereTheNewAreaLies)
{
    expect_stretch(share_axis({64, 0, 10, 400}, {64, 0, 50, 200}), 10, 410, 50, 250);
}

TEST(StandIn, OfAViewThatWasPannedBeforeAndWhileItWasZoomed)
{
    // A place p of before is at (p - 0.25) * 2 + 0.5 now, which is the middle again.
    const shared_stretch in = share_axis({64, 0.25, 0, 400}, {128, 0.5, 0, 400});
    expect_stretch(in, 100, 300, 0, 400);
    const shared_stretch right = share_axis({64, 0.25, 0, 400}, {128, 1, 0, 400});
    expect_stretch(right, 50, 250, 0, 400);
    const shared_stretch out = share_axis({128, 0.5, 0, 400}, {64, -0.5, 0, 400});
    expect_stretch(out, 100, 400, 0, 150);
}

TEST(StandIn, IsEmptyWhereTheViewsShareNothing)
{
    EXPECT_TRUE(share_axis({64, 0, 0, 400}, {64, 2.5, 0, 400}).empty);
    EXPECT_TRUE(share_axis({64, 0, 0, 400}, {64, -2, 0, 400}).empty);
}

TEST(StandIn, IsEmptyWhereANumberIsMissing)
{
    const view_axis axis = {64, 0, 0, 400};
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double beyond : {infinity, -infinity, nan}) {
        EXPECT_TRUE(share_axis(axis, {beyond, 0, 0, 400}).empty) << "scale " << beyond;
        EXPECT_TRUE(share_axis(axis, {64, beyond, 0, 400}).empty) << "shift " << beyond;
    }
    EXPECT_TRUE(share_axis({0, 0, 0, 400}, axis).empty);
    EXPECT_TRUE(share_axis({0, 0, 0, 400}, {0, 0, 0, 400}).empty);
}

TEST(StandIn, IsAPointWhereTheViewIsZoomedOutOfWithoutEnd)
{
    const shared_stretch point = share_axis({64, 0, 0, 400}, {0, 0.5, 0, 400});
    expect_stretch(point, 0, 400, 300, 300);
}

} // namespace
