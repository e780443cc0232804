// Lines that are told to cover no pixel, drawn by the driver.
#include "render/blank_lines.hpp"
#include "tests/gl/line_rig.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_vertex;

class BlankLines : public line_rig
{
protected:
    // Half of them begin where rounding decides: on a grid of eighths, or next to it.
    path_vertex begin_of_line()
    {
        const auto along = [&](int size) {
            const double anywhere = share(random) * size;
            if (random() % 2 == 0)
                return anywhere;
            return std::round(anywhere * 8) / 8 + (share(random) - 0.5) / 64;
        };
        const double x = along(area.width);
        return at(x, along(area.height));
    }

    // Lines of up to that many pixels, two vertices each, parted by whether they are told
    // to cover nothing.
    void make_lines(int count, double longest)
    {
        const double unit = 1 / target.x.scale; // of a pixel
        blank.clear();
        others.clear();
        for (int i = 0; i < count; ++i) {
            const path_vertex from = begin_of_line();
            const double length = longest * share(random) * unit;
            const double angle = 6.3 * share(random);
            const path_vertex line[] = {
                from,
                {static_cast<std::int32_t>(from.x + length * std::cos(angle)),
                 static_cast<std::int32_t>(from.y + length * std::sin(angle))}};
            const bool may_cover =
                vimbo::lines_with_pixels(line, rounding_of(vimbo::box_around(line), target),
                                         target) != 0;
            std::vector<path_vertex> &lines = may_cover ? others : blank;
            lines.insert(lines.end(), std::begin(line), std::end(line));
        }
    }

    // How many pixels of the area these lines cover together.
    int covered_by(const std::vector<path_vertex> &lines)
    {
        load(lines);
        vimbo::begin_area(area);
        if (target.upside_down)
            vimbo::turn_clip_origin(true);
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        for (std::size_t first = 0; first < lines.size();
             first += std::size_t{2} * vimbo::path_run_capacity)
            draw_some(lines.size(), first);
        pixels drawn(std::size_t{area.width} * area.height * 4);
        glReadPixels(area.x, area.y, area.width, area.height, GL_RGBA, GL_UNSIGNED_BYTE,
                     drawn.data());
        if (target.upside_down)
            vimbo::turn_clip_origin(false);
        vimbo::end_area();
        int covered = 0;
        for (std::size_t i = 0; i < drawn.size(); i += 4)
            covered += drawn[i] != 0 ? 1 : 0;
        return covered;
    }

    std::vector<path_vertex> blank;
    std::vector<path_vertex> others;

private:
    void draw_some(std::size_t vertices, std::size_t first)
    {
        runs->used = 0;
        for (std::size_t i = first; i < vertices && runs->used < vimbo::path_run_capacity; i += 2) {
            const int at = vimbo::path_run_capacity - ++runs->used;
            runs->first[at] = static_cast<GLint>(i) + 1; // behind the path's own first vertex
            runs->count[at] = 2;
        }
        draw_path_runs(program, target.matrix, mosaic.mosaic_vao, *runs, vimbo::mosaic_colours);
    }

    std::mt19937 random{25};
    std::uniform_real_distribution<> share{0, 1};
    const std::unique_ptr<vimbo::path_runs> runs = std::make_unique<vimbo::path_runs>();
};

TEST_F(BlankLines, CoverNoPixelInAnyView)
{
    for (const bool upside_down : {false, true})
        for (const float zoom : {1.0F, 300.0F, 20000.0F})
            for (const double longest : {0.05, 0.3, 1.5}) {
                preview.zoom = zoom;
                preview.pan_x = 0.13F;
                preview.pan_y = -0.29F;
                project_into_area(upside_down);
                make_lines(40000, longest);
                const std::string view = "at zoom " + std::to_string(zoom) + ", up to " +
                                         std::to_string(longest) + " pixels long";
                EXPECT_GT(blank.size(), 2U * 500) << view;
                EXPECT_EQ(covered_by(blank), 0) << view;
                EXPECT_GT(covered_by(others), 500) << view;
            }
}

} // namespace
