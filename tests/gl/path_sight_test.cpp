// Parts of a path that are told not to be seen, against the pixels that the driver covers.
#include "render/path_sight.hpp"
#include "tests/gl/line_rig.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_sight;
using vimbo::path_vertex;

class PathSight : public line_rig
{
protected:
    // Covers all but one pixel of each of these lines at a time: none may be left out then.
    void see_all(const std::vector<path_vertex> &ends)
    {
        draw_lines(ends, [&](const path_vertex &from, const path_vertex &to, const pixels &drawn) {
            for (int row = 0; row < area.height; ++row)
                for (int column = 0; column < area.width; ++column)
                    if (is_drawn(drawn, row, column)) {
                        cover_all_but(*covered, row, column);
                        expect_seen(from, to, row, column);
                    }
        });
    }

    void expect_seen(const path_vertex &from, const path_vertex &to, int row, int column)
    {
        const path_vertex strip[] = {from, to};
        const vimbo::path_part part = part_of(*covered, target, vimbo::box_around(strip), 1, 2);
        const path_sight sight = sight_of(*covered, part);
        ++count;
        doubtful += sight == path_sight::doubtful ? 1 : 0;
        const bool is_seen =
            sight == path_sight::seen ||
            (sight == path_sight::doubtful && !is_doubt_unfounded(*covered, part, strip, target) &&
             doubtful_lines(strip, part.off, target) == 1);
        if (!is_seen && ++left_out <= 5)
            ADD_FAILURE() << "a line from " << place_of(from) << " to " << place_of(to)
                          << " is left out although pixel " << column << ", " << row << " is open";
    }

    // A part of these vertices, where the rows from `first` to `last` are covered.
    vimbo::path_part part_between_rows(const std::vector<path_vertex> &strip, int first, int last)
    {
        clear_covered(*covered, area.width, area.height);
        for (int row = first; row <= last; ++row)
            cover_row(*covered, row, 0, area.width - 1);
        return part_of(*covered, target, vimbo::box_around(strip), 1,
                       static_cast<std::int32_t>(strip.size()));
    }

    const std::unique_ptr<vimbo::covered_pixels> covered =
        std::make_unique<vimbo::covered_pixels>();
    int count = 0;    // pixels of lines
    int doubtful = 0; // of these
    int left_out = 0;
};

TEST_F(PathSight, IsOfAllThatCanBeSeen)
{
    std::mt19937 random(31);
    for (const bool upside_down : {false, true}) {
        if (upside_down && !vimbo::can_turn_clip_origin())
            continue;
        project_into_area(upside_down);
        for (const double reach : {0.7, 3.0, 12.0}) {
            see_all(lines_anywhere(1500, reach, 0, random));
        }
    }
    EXPECT_EQ(left_out, 0);
    EXPECT_GT(count, 9000);
}

TEST_F(PathSight, IsOfLinesThatGoAlongTheEdgesOfDiamonds)
{
    std::mt19937 random(32);
    for (const double longest : {0.2, 1.0, 20.0})
        see_all(lines_beside_edges(6000, longest, random));
    EXPECT_EQ(left_out, 0);
    EXPECT_GT(doubtful, 10) << "no line was drawn past a corner";
}

TEST_F(PathSight, IsDoubtfulWithinHalfAPixelOfWhatIsNotCovered)
{
    const std::vector<path_vertex> in_row_10 = {at(20.2, 10.6), at(30.7, 10.6)};
    EXPECT_EQ(sight_of(*covered, part_between_rows(in_row_10, 9, 11)), path_sight::covered);
    EXPECT_EQ(sight_of(*covered, part_between_rows(in_row_10, 10, 11)), path_sight::covered);
    EXPECT_EQ(sight_of(*covered, part_between_rows(in_row_10, 9, 10)), path_sight::doubtful);
    EXPECT_EQ(sight_of(*covered, part_between_rows(in_row_10, 11, 12)), path_sight::seen);
    const std::vector<path_vertex> beside = {at(20.2, -3.6), at(30.7, -3.6)};
    EXPECT_EQ(sight_of(*covered, part_between_rows(beside, 1, 2)), path_sight::outside);
}

// Lines there and back, in a row whose upper neighbour is not covered.
class SightOfStrips : public PathSight
{
protected:
    // As many lines as told, all but one of them level, up to the height of that one.
    std::vector<path_vertex> lines_with_one(int lines, int which, double slope)
    {
        std::vector<path_vertex> strip;
        for (int i = 0; i <= lines; ++i)
            strip.push_back(at(i % 2 == 0 ? 20.2 : 30.7, 10.6));
        const double x = strip[static_cast<std::size_t>(which)].x * target.x.scale + target.x.shift;
        strip[static_cast<std::size_t>(which) + 1] = at(x + 0.2, 10.6 + 0.2 * slope);
        for (std::size_t i = static_cast<std::size_t>(which) + 2; i < strip.size(); ++i)
            strip[i] = at(i % 2 == 0 ? 20.2 : 30.7, 10.6 + 0.2 * slope);
        return strip;
    }

    bool is_unfounded(const std::vector<path_vertex> &strip)
    {
        const vimbo::path_part part = part_between_rows(strip, 9, 10);
        EXPECT_EQ(sight_of(*covered, part), path_sight::doubtful);
        return is_doubt_unfounded(*covered, part, strip, target);
    }
};

TEST_F(SightOfStrips, IsUnfoundedDoubtWithoutANearlyDiagonalLine)
{
    for (const int lines : {1, 2, 3, 15, 16, 17, 40})
        for (int which = 0; which < lines; ++which) {
            EXPECT_TRUE(is_unfounded(lines_with_one(lines, which, 0.0)));
            EXPECT_TRUE(is_unfounded(lines_with_one(lines, which, 0.7)));
            EXPECT_TRUE(is_unfounded(lines_with_one(lines, which, -0.7)));
            EXPECT_FALSE(is_unfounded(lines_with_one(lines, which, 0.8))) << which;
            EXPECT_FALSE(is_unfounded(lines_with_one(lines, which, -0.8))) << which;
            EXPECT_FALSE(is_unfounded(lines_with_one(lines, which, 1.2))) << which;
        }
}

TEST_F(SightOfStrips, IsDoubtfulNextToTheRowUnlessAllLinesAreNearlyLevel)
{
    const auto unfounded = [&](double slope) {
        // Its upper end is a hundredth of a pixel below the next row's diamonds.
        return is_unfounded({at(20.5 - 0.1 / slope, 10.893), at(20.5, 10.993)});
    };
    EXPECT_FALSE(unfounded(0.5));
    EXPECT_FALSE(unfounded(0.2));
    EXPECT_TRUE(unfounded(0.1));
}

TEST_F(SightOfStrips, HasDoubtfulLinesWhereAnEndIsBesideTheEdgeThatTheyGoAlong)
{
    const double off = 0.003;
    const auto lines = [&](const std::vector<path_vertex> &strip) {
        return doubtful_lines(strip, off, target);
    };
    // Of the pixel whose middle is 20.5, 10.5: its upper left edge rises.
    EXPECT_EQ(lines({at(20.25, 10.75), at(20.05, 10.55)}), 1U);
    EXPECT_EQ(lines({at(20.05, 10.55), at(20.25, 10.75)}), 1U);
    EXPECT_EQ(lines({at(20.25, 10.755), at(20.55, 10.95)}), 1U);
    EXPECT_EQ(lines({at(20.25, 10.745), at(20.55, 10.95)}), 1U);
    EXPECT_EQ(lines({at(20.25, 10.758), at(20.55, 10.95)}), 0U) << "not beside it";
    EXPECT_EQ(lines({at(20.25, 10.742), at(20.55, 10.95)}), 0U) << "not beside it";
    EXPECT_EQ(lines({at(20.25, 10.75), at(20.45, 10.55)}), 0U) << "across the edge";
    EXPECT_EQ(lines({at(20.75, 10.75), at(20.95, 10.55)}), 1U) << "the upper right one falls";
    EXPECT_EQ(lines({at(20.25, 10.75), at(20.05, 10.73)}), 0U) << "level";
    EXPECT_EQ(lines({at(20.25, 10.75), at(20.23, 10.55)}), 0U) << "upright";
    EXPECT_EQ(
        lines({at(20.3, 10.3), at(20.4, 10.4), at(20.25, 10.75), at(20.05, 10.55), at(20.1, 10.5)}),
        4U);
}

} // namespace
