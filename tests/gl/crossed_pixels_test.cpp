// What is worked out of a line's pixels, against the pixels that the driver covers.
#include "render/crossed_pixels.hpp"
#include "render/offscreen.hpp"
#include "tests/gl/preview_rig.hpp"
#include "tests/support/hidden.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_vertex;

constexpr vimbo::picture_area area = {40, 60, 96, 80};

class CrossedPixels : public preview_rig
{
protected:
    CrossedPixels()
    {
        project_into_area(false);
    }

    void project_into_area(bool upside_down)
    {
        target = project(vimbo::preview_matrix(preview, area.width, area.height), area, upside_down,
                         vimbo::driver_grid());
    }

    // A place in pixels of the area, as a path's vertex.
    path_vertex at(double x, double y) const
    {
        const vimbo::path_matrix &m = target.matrix;
        const double across = (x / area.width * 2 - 1 - m.element[12]) / m.element[0];
        const double up = (y / area.height * 2 - 1 - m.element[13]) / m.element[5];
        const auto length = [](double share) {
            return static_cast<std::int32_t>(
                std::clamp(std::round(share * vimbo::largest_length), -2147483000.0, 2147483000.0));
        };
        return {length(across), length(up)};
    }

    // Counts the pixels of each of these lines, two vertices each: those that are known
    // beforehand, those that are drawn, and those that are known and not drawn.
    void compare(const std::vector<path_vertex> &ends)
    {
        load(ends);
        vimbo::begin_area(area);
        if (target.upside_down)
            vimbo::turn_clip_origin(true);
        pixels drawn(std::size_t{area.width} * area.height * 4);
        for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
            glClearColor(0, 0, 0, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            vimbo::draw_path_range(program, target.matrix, mosaic.mosaic_vao,
                                   static_cast<std::int32_t>(i) + 1, 2, vimbo::mosaic_colours);
            glReadPixels(area.x, area.y, area.width, area.height, GL_RGBA, GL_UNSIGNED_BYTE,
                         drawn.data());
            compare_line(ends[i], ends[i + 1], drawn);
            hide_line(ends[i], ends[i + 1], drawn);
        }
        if (target.upside_down)
            vimbo::turn_clip_origin(false);
        vimbo::end_area();
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
        const vimbo::path_box box = {std::min(from.x, to.x), std::min(from.y, to.y),
                                     std::max(from.x, to.x), std::max(from.y, to.y)};
        return rounding_of(box, target);
    }

    void cover_all_but(int open_row, int open_column)
    {
        clear_covered(*covered, area.width, area.height);
        for (int row = 0; row < area.height; ++row)
            if (row != open_row)
                cover_row(*covered, row, 0, area.width - 1);
        if (open_column > 0)
            cover_row(*covered, open_row, 0, open_column - 1);
        if (open_column + 1 < area.width)
            cover_row(*covered, open_row, open_column + 1, area.width - 1);
    }

    bool is_drawn(const pixels &drawn, int row, int column) const
    {
        return drawn[static_cast<std::size_t>(row * area.width + column) * 4] != 0;
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
        cover_all_but(open_row, open_column);
        if (is_line_hidden(*covered, from, to, off, target) && ++wrongly_hidden <= 5)
            ADD_FAILURE() << "a line from " << place_of(from) << " to " << place_of(to)
                          << " is taken for hidden although pixel " << open_column << ", "
                          << open_row << " is open";
    }

    std::string place_of(const path_vertex &vertex) const
    {
        const vimbo::pixel_box box =
            pixels_of(vimbo::path_box{vertex.x, vertex.y, vertex.x, vertex.y}, target);
        return std::to_string((box.left + box.right) / 2) + ", " +
               std::to_string((box.bottom + box.top) / 2);
    }

    const std::unique_ptr<vimbo::covered_pixels> covered =
        std::make_unique<vimbo::covered_pixels>();
    vimbo::path_projection target = {};
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
            const auto share = [&] { return static_cast<double>(random() % 100001) / 100000; };
            std::vector<path_vertex> ends;
            for (int i = 0; i < 1500; ++i) {
                const double x = share() * (area.width + 10) - 5;
                const double y = share() * (area.height + 10) - 5;
                ends.push_back(at(x, y));
                ends.push_back(at(x + (2 * share() - 1) * reach, y + (2 * share() - 1) * reach));
            }
            compare(ends);
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
    const auto share = [&] { return static_cast<double>(random() % 100001) / 100000; };
    const auto side = [&] { return random() % 2 == 0 ? 1 : -1; };
    for (const double longest : {0.2, 1.0, 20.0}) {
        std::vector<path_vertex> ends;
        for (int i = 0; i < 6000; ++i) {
            const double across = 0.5 * share();
            const double up = 0.499 - across;
            const double x = std::floor(share() * area.width) + 0.5 + side() * across;
            const double y = std::floor(share() * area.height) + 0.5 + side() * up;
            const double length = longest * share();
            const double steepness = 1 + 0.1 * (share() - 0.5);
            ends.push_back(at(x, y));
            ends.push_back(at(x + side() * length, y + side() * length * steepness));
            if (random() % 2 == 0)
                std::swap(ends[ends.size() - 2], ends.back());
        }
        compare(ends);
    }
    EXPECT_EQ(wrong_count, 0);
    EXPECT_EQ(wrongly_hidden, 0);
    EXPECT_GT(hidden_lines, line_count / 10 * 8) << "few lines are known to be hidden";
}

} // namespace
