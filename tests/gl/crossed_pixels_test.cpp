// What is worked out of a line's pixels, against the pixels that the driver covers.
#include "render/crossed_pixels.hpp"
#include "tests/gl/line_rig.hpp"
#include "tests/support/hidden.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_vertex;

class CrossedPixels : public line_rig
{
protected:
    // Counts the pixels of each of these lines, two vertices each: those that are known
    // beforehand, those that are drawn, and those that are known and not drawn.
    void compare(const std::vector<path_vertex> &ends)
    {
        draw_lines(ends, [&](const path_vertex &from, const path_vertex &to, const pixels &drawn) {
            compare_line(from, to, drawn);
            hide_line(from, to, drawn);
        });
    }

    void compare_line(const path_vertex &from, const path_vertex &to, const pixels &drawn)
    {
        clear_covered(*covered, area.width, area.height);
        const path_vertex strip[] = {from, to};
        cover_crossed(*covered, strip, rounding_between(from, to), target);
        for (int row = 0; row < area.height; ++row)
            for (int column = 0; column < area.width; ++column) {
                const double x = column + 0.5;
                const double y = row + 0.5;
                const bool is_known = rig::is_hidden(*covered, {x, y, x, y});
                drawn_count += is_drawn(drawn, row, column) ? 1 : 0;
                known_count += is_known ? 1 : 0;
                if (is_known && !is_drawn(drawn, row, column) && ++wrong_count <= 5)
                    ADD_FAILURE() << "pixel " << column << ", " << row << " of a line from "
                                  << place_of(from) << " to " << place_of(to);
            }
    }

    double rounding_between(const path_vertex &from, const path_vertex &to) const
    {
        const path_vertex line[] = {from, to};
        return rounding_of(vimbo::box_around(line), target);
    }

    // Counts the lines that are taken for hidden although one of their pixels is not
    // covered, and those that are when all pixels are that lie around what is drawn.
    void hide_line(const path_vertex &from, const path_vertex &to, const pixels &drawn)
    {
        const double off = rounding_between(from, to);
        clear_covered(*covered, area.width, area.height);
        std::vector<std::pair<int, int>> drawn_places;
        for (int row = 0; row < area.height; ++row)
            for (int column = 0; column < area.width; ++column)
                if (is_drawn(drawn, row, column)) {
                    drawn_places.emplace_back(row, column);
                    for (int r = std::max(row - 1, 0); r <= std::min(row + 1, area.height - 1); ++r)
                        cover_row(*covered, r, std::max(column - 1, 0),
                                  std::min(column + 1, area.width - 1));
                }
        if (drawn_places.empty())
            return;
        ++line_count;
        hidden_lines += is_line_hidden(*covered, from, to, off, target) ? 1 : 0;
        const auto &[open_row, open_column] = drawn_places[line_count % drawn_places.size()];
        cover_all_but(*covered, open_row, open_column);
        if (is_line_hidden(*covered, from, to, off, target) && ++wrongly_hidden <= 5)
            ADD_FAILURE() << "a line from " << place_of(from) << " to " << place_of(to)
                          << " is taken for hidden although pixel " << open_column << ", "
                          << open_row << " is open";
    }

    const std::unique_ptr<vimbo::covered_pixels> covered =
        std::make_unique<vimbo::covered_pixels>();
    int drawn_count = 0;
    int known_count = 0;
    int wrong_count = 0;
    std::size_t line_count = 0; // of lines that draw something
    std::size_t hidden_lines = 0;
    int wrongly_hidden = 0;
};

TEST_F(CrossedPixels, AreDrawnWhereverALineLies)
{
    std::mt19937 random(21);
    for (const bool upside_down : {false, true}) {
        if (upside_down && !vimbo::can_turn_clip_origin())
            continue;
        project_into_area(upside_down);
        for (const double reach : {0.7, 3.0, 12.0, 60.0, 900.0}) {
            compare(lines_anywhere(1500, reach, 5, random));
        }
    }
    EXPECT_EQ(wrong_count, 0);
    EXPECT_GT(known_count, drawn_count / 2) << "little of what is drawn is known";
    EXPECT_EQ(wrongly_hidden, 0);
    EXPECT_GT(hidden_lines, line_count / 10 * 9) << "few lines are known to be hidden";
}

TEST_F(CrossedPixels, AreDrawnWhereLinesEndOnTheEdgesOfDiamonds)
{
    std::mt19937 random(22);
    for (const int parts_of_a_pixel : {2, 8, 64}) {
        const auto within = [&](int size) {
            return static_cast<double>(random() % static_cast<unsigned>(size * parts_of_a_pixel)) /
                   parts_of_a_pixel;
        };
        std::vector<path_vertex> ends;
        for (int i = 0; i < 3000; ++i) {
            const double x = within(area.width);
            const double y = within(area.height);
            ends.push_back(at(x, y));
            ends.push_back(i % 3 == 0 ? at(within(area.width), y)
                                      : at(x + within(8) - 4, y + within(8) - 4));
        }
        compare(ends);
    }
    EXPECT_EQ(wrong_count, 0);
    EXPECT_GT(known_count, drawn_count / 2) << "little of what is drawn is known";
    EXPECT_EQ(wrongly_hidden, 0);
    EXPECT_GT(hidden_lines, line_count / 10 * 9) << "few lines are known to be hidden";
}

TEST_F(CrossedPixels, AreDrawnWhereDiagonalLinesBeginNextToTheEdgesOfDiamonds)
{
    std::mt19937 random(23);
    for (const double longest : {0.2, 1.0, 20.0})
        compare(lines_beside_edges(6000, longest, random));
    EXPECT_EQ(wrong_count, 0);
    EXPECT_EQ(wrongly_hidden, 0);
    EXPECT_GT(hidden_lines, line_count / 10 * 8) << "few lines are known to be hidden";
}

} // namespace
