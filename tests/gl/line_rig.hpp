// Lines placed by pixels of a small area of the tests' window, and drawn one by one.
#pragma once

#include "render/crossed_pixels.hpp"
#include "render/offscreen.hpp"
#include "tests/gl/preview_rig.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace rig
{

inline constexpr vimbo::picture_area area = {40, 60, 96, 80};

class line_rig : public preview_rig
{
protected:
    line_rig()
    {
        project_into_area(false);
    }

    void project_into_area(bool upside_down)
    {
        target = project(vimbo::preview_matrix(preview, area.width, area.height), area, upside_down,
                         vimbo::driver_grid());
    }

    /// A place in pixels of the area, as a path's vertex.
    vimbo::path_vertex at(double x, double y) const
    {
        const auto length = [](double pixel, const vimbo::pixel_axis &axis) {
            return static_cast<std::int32_t>(std::clamp(
                std::round((pixel - axis.shift) / axis.scale), -2147483000.0, 2147483000.0));
        };
        return {length(x, target.x), length(y, target.y)};
    }

    std::string place_of(const vimbo::path_vertex &vertex) const
    {
        const auto pixel = [](std::int32_t length, const vimbo::pixel_axis &axis) {
            return std::to_string(length * axis.scale + axis.shift);
        };
        return pixel(vertex.x, target.x) + ", " + pixel(vertex.y, target.y);
    }

    static bool is_drawn(const pixels &drawn, int row, int column)
    {
        return drawn[static_cast<std::size_t>(row * area.width + column) * 4] != 0;
    }

    /// Draws these lines, two vertices each, one after the other on black, and gives each
    /// one's ends and the area's pixels.
    template <typename See>
    void draw_lines(const std::vector<vimbo::path_vertex> &ends, See see)
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
            see(ends[i], ends[i + 1], drawn);
        }
        if (target.upside_down)
            vimbo::turn_clip_origin(false);
        vimbo::end_area();
    }

    /// Lines anywhere in the area, and so many pixels beside it, that reach up to so far.
    template <typename Random>
    std::vector<vimbo::path_vertex> lines_anywhere(int count, double reach, double beside,
                                                   Random &random) const
    {
        std::vector<vimbo::path_vertex> ends;
        for (int i = 0; i < count; ++i) {
            const double x = share(random) * (area.width + 2 * beside) - beside;
            const double y = share(random) * (area.height + 2 * beside) - beside;
            ends.push_back(at(x, y));
            ends.push_back(
                at(x + (2 * share(random) - 1) * reach, y + (2 * share(random) - 1) * reach));
        }
        return ends;
    }

    /// Lines of up to that many pixels that begin or end beside the edges of diamonds, and go
    /// along them, more or less.
    template <typename Random>
    std::vector<vimbo::path_vertex> lines_beside_edges(int count, double longest,
                                                       Random &random) const
    {
        const auto side = [&] { return random() % 2 == 0 ? 1 : -1; };
        std::vector<vimbo::path_vertex> ends;
        for (int i = 0; i < count; ++i) {
            const double across = 0.5 * share(random);
            const double up = 0.499 - across;
            const double x = std::floor(share(random) * area.width) + 0.5 + side() * across;
            const double y = std::floor(share(random) * area.height) + 0.5 + side() * up;
            const double length = longest * share(random);
            const double steepness = 1 + 0.1 * (share(random) - 0.5);
            ends.push_back(at(x, y));
            ends.push_back(at(x + side() * length, y + side() * length * steepness));
            if (random() % 2 == 0)
                std::swap(ends[ends.size() - 2], ends.back());
        }
        return ends;
    }

    vimbo::path_projection target = {};

private:
    template <typename Random>
    static double share(Random &random)
    {
        return static_cast<double>(random() % 100001) / 100000;
    }
};

/// Covers all of the area but one pixel.
inline void cover_all_but(vimbo::covered_pixels &covered, int open_row, int open_column)
{
    clear_covered(covered, area.width, area.height);
    for (int row = 0; row < area.height; ++row)
        if (row != open_row)
            cover_row(covered, row, 0, area.width - 1);
    if (open_column > 0)
        cover_row(covered, open_row, 0, open_column - 1);
    if (open_column + 1 < area.width)
        cover_row(covered, open_row, open_column + 1, area.width - 1);
}

} // namespace rig
