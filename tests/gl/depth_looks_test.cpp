// Looks at the depth buffer: what they see, and how often they are taken.
#include "render/depth_looks.hpp"
#include "render/offscreen.hpp"
#include "tests/support/hidden.hpp"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using vimbo::depth_looks;
using vimbo::pixel_range;

constexpr vimbo::picture_area area = {40, 60, 300, 200};

class DepthLooks : public testing::Test
{
protected:
    DepthLooks()
    {
        fit_offscreen(target, 400, 300);
        glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
        glEnable(GL_SCISSOR_TEST);
        fill({0, 0, area.width - 1, area.height - 1}, 1);
        clear_covered(*covered, area.width, area.height);
        begin_looks(looks);
    }

    ~DepthLooks() override
    {
        glClearDepth(1);
        glDisable(GL_SCISSOR_TEST);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        delete_offscreen(target);
    }

    // Gives all pixels of a range of the area this depth.
    static void fill(const pixel_range &range, double depth)
    {
        glScissor(area.x + range.left, area.y + range.bottom, range.right - range.left + 1,
                  range.top - range.bottom + 1);
        glClearDepth(depth);
        glClear(GL_DEPTH_BUFFER_BIT);
    }

    // How many pixels of the area are known to be covered, but for those of the range.
    int covered_beside(const pixel_range &range)
    {
        int count = 0;
        for (int row = 0; row < area.height; ++row)
            for (int column = 0; column < area.width; ++column)
                if (row < range.bottom || row > range.top || column < range.left ||
                    column > range.right)
                    count += is_covered(column, row) ? 1 : 0;
        return count;
    }

    bool is_covered(int column, int row)
    {
        const double x = column + 0.5;
        const double y = row + 0.5;
        return rig::is_hidden(*covered, {x, y, x, y});
    }

    bool are_covered(const pixel_range &range)
    {
        return rig::is_hidden(
            *covered, {range.left + 0.5, range.bottom + 0.5, range.right + 0.5, range.top + 0.5});
    }

    // Looks after so many vertices were left out thanks to the look before.
    void look(std::int64_t spared)
    {
        looks.unseen = looks.look_after;
        looks.spared = spared;
        touch(looks, {0, 0, 0, 0});
        look_at_depths(looks, *covered, area, vertices_per_second);
        EXPECT_EQ(looks.unseen, 0);
        EXPECT_EQ(looks.spared, 0);
    }

    static constexpr double vertices_per_second = 1e6;
    vimbo::offscreen target = {};
    depth_looks looks = {};
    const std::unique_ptr<vimbo::covered_pixels> covered =
        std::make_unique<vimbo::covered_pixels>();
};

TEST_F(DepthLooks, SeeWhatLiesNearerThanTheFarEndWhereSomethingWasDrawn)
{
    constexpr pixel_range drawn = {70, 20, 280, 199};
    fill(drawn, 0.499);
    touch(looks, {75, 20, 280, 100});
    touch(looks, {70, 90, 200, 199});
    look_at_depths(looks, *covered, area, vertices_per_second);
    EXPECT_TRUE(are_covered(drawn));
    EXPECT_EQ(covered_beside(drawn), 0);
}

TEST_F(DepthLooks, SeeNothingWhereNothingWasDrawnSinceTheLastOne)
{
    fill({0, 0, 299, 199}, 0.25);
    constexpr pixel_range first = {0, 0, 9, 9};
    touch(looks, first);
    look_at_depths(looks, *covered, area, vertices_per_second);
    EXPECT_EQ(covered_beside(first), 0);
    constexpr pixel_range second = {100, 50, 299, 50};
    touch(looks, second);
    look_at_depths(looks, *covered, area, vertices_per_second);
    EXPECT_TRUE(are_covered(second));
    EXPECT_FALSE(is_covered(50, 20)) << "between what was drawn at first and since";
}

TEST_F(DepthLooks, AreDueAfterSoManyVertices)
{
    looks.look_after = 500;
    looks.unseen = 499;
    EXPECT_FALSE(is_look_due(looks));
    looks.unseen = 500;
    EXPECT_TRUE(is_look_due(looks));
}

TEST_F(DepthLooks, KeepForTheNextPassHowOftenTheyPay)
{
    EXPECT_EQ(looks.look_after, 512) << "at first";
    looks.look_after = 5000;
    looks.unseen = 7;
    looks.spared = 8;
    looks.seeing = 9;
    looks.spared_of_late = 10;
    begin_looks(looks);
    EXPECT_EQ(looks.look_after, 5000);
    EXPECT_EQ(looks.unseen, 0);
    EXPECT_EQ(looks.spared, 0);
    EXPECT_EQ(looks.seeing, 0);
    EXPECT_EQ(looks.spared_of_late, 10);
}

TEST_F(DepthLooks, ComeTwiceAsOftenWhereTheyPayAndHalfAsOftenWhereTheyDoNot)
{
    // A look costs a thousand vertices, half of it for the wait.
    const auto after = [&](std::int64_t spared) {
        looks.look_after = 2000;
        looks.seeing = 0.0005;
        looks.least_wait = 0.0005;
        looks.spared_of_late = static_cast<double>(spared);
        look(spared);
        return looks.look_after;
    };
    EXPECT_EQ(after(0), 4000);
    EXPECT_EQ(after(11999), 4000);
    EXPECT_EQ(after(12001), 2000);
    EXPECT_EQ(after(23999), 2000);
    EXPECT_EQ(after(24001), 1000);
    EXPECT_EQ(after(1000000), 1000);
}

TEST_F(DepthLooks, AreWeighedByWhatSeveralOfThemHaveSpared)
{
    looks.spared_of_late = 10000;
    look(20000);
    EXPECT_EQ(looks.spared_of_late, 12000);
    look(0);
    EXPECT_EQ(looks.spared_of_late, 9600);
    look(0);
    EXPECT_EQ(looks.spared_of_late, 7680);
}

TEST_F(DepthLooks, BecomeFewWhereItIsNotKnownWhatTheyCost)
{
    looks.look_after = 2000;
    looks.spared = 1000000;
    look_at_depths(looks, *covered, area, 0);
    EXPECT_EQ(looks.look_after, 4000);
    for (int i = 0; i < 20; ++i)
        look_at_depths(looks, *covered, area, 0);
    EXPECT_EQ(looks.look_after, 1 << 20);
}

TEST_F(DepthLooks, ComeNeitherAfterAFewLinesNorLaterThanTheDriverDrawsInAFewFrames)
{
    looks.look_after = 520;
    look(10000000);
    EXPECT_EQ(looks.look_after, 512);
    looks.look_after = 9000;
    looks.spared_of_late = 0;
    look(0);
    EXPECT_EQ(looks.look_after, 16000) << "of a million vertices a second";
}

TEST_F(DepthLooks, KnowWhatTheyTakeAndTheLeastThatTheyWait)
{
    look(0);
    EXPECT_GT(looks.seeing, 0);
    EXPECT_GT(looks.least_wait, 0);
    looks.least_wait = 1e-12;
    look(0);
    EXPECT_EQ(looks.least_wait, 1e-12);
    looks.least_wait = 1e9;
    look(0);
    EXPECT_LT(looks.least_wait, 100);
    EXPECT_LT(looks.seeing, 100);
}

} // namespace
