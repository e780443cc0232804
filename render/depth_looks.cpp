#include "render/depth_looks.hpp"

#include "render/slice_pace.hpp"

#include <algorithm>
#include <cstddef>
#include <span>

namespace vimbo
{

namespace
{

constexpr std::int32_t least_look_after = 512;
constexpr std::int32_t most_look_after = 1 << 20; // where no pace is known
constexpr double most_look_time = 0.016;          // seconds of drawing; what pays is found again so
constexpr pixel_range nothing_touched = {INT32_MAX, INT32_MAX, -1, -1};
constexpr GLuint half_depth = GLuint{1} << 31;

void read_depths(const depth_looks &looks, covered_pixels &covered, const picture_area &area)
{
    constexpr int most = 1 << 14;
    GLuint depths[most];
    const pixel_range &range = looks.touched;
    for (int left = range.left; left <= range.right; left += most) {
        const int width = std::min(range.right - left + 1, most);
        const int rows = most / width;
        for (int row = range.bottom; row <= range.top; row += rows) {
            const int count = std::min(rows, range.top - row + 1);
            glReadPixels(area.x + left, area.y + row, width, count, GL_DEPTH_COMPONENT,
                         GL_UNSIGNED_INT, depths);
            const auto row_size = static_cast<std::size_t>(width);
            for (int i = 0; i < count; ++i)
                see_row(covered, row + i, left,
                        std::span(depths).subspan(static_cast<std::size_t>(i) * row_size, row_size),
                        half_depth);
        }
    }
}

void see_depths(depth_looks &looks, covered_pixels &covered, const picture_area &area)
{
    const double start = pace_clock();
    glFinish();
    const double finished = pace_clock();
    begin_look(covered, looks.touched);
    read_depths(looks, covered, area);
    looks.touched = nothing_touched;
    looks.seeing = pace_clock() - finished;
    // A look that had the least to wait for tells what waiting costs by itself.
    const double waiting = finished - start;
    looks.least_wait = looks.least_wait > 0 ? std::min(looks.least_wait, waiting) : waiting;
}

// Weighs what looks have spared of late against what could have been drawn meanwhile: where
// they pay, they come sooner. Most of what is spared would have taken less time than what is
// drawn, and the renderer idles at a look: so it has to spare many times its cost. One look
// alone says little: of a hatch, most spare nothing, and then one half of a row.
void weigh(depth_looks &looks, double vertices_per_second)
{
    constexpr double share_of_last = 0.2;
    constexpr double least_worth = 12;
    looks.spared_of_late +=
        (static_cast<double>(looks.spared) - looks.spared_of_late) * share_of_last;
    const bool is_pace_known = vertices_per_second > 0;
    const double cost = (looks.least_wait + looks.seeing) * vertices_per_second;
    double after = looks.look_after;
    if (!is_pace_known || looks.spared_of_late < least_worth * cost)
        after *= 2;
    else if (looks.spared_of_late > 2 * least_worth * cost)
        after /= 2;
    const double most = is_pace_known ? most_look_time * vertices_per_second : most_look_after;
    looks.look_after = static_cast<std::int32_t>(
        std::clamp(after, double{least_look_after}, std::max(most, double{least_look_after})));
}

} // namespace

void begin_looks(depth_looks &looks)
{
    looks.look_after = std::max(looks.look_after, least_look_after);
    looks.unseen = 0;
    looks.touched = nothing_touched;
    looks.spared = 0;
    looks.seeing = 0;
}

void touch(depth_looks &looks, const pixel_range &range)
{
    pixel_range &touched = looks.touched;
    touched = {std::min(touched.left, range.left), std::min(touched.bottom, range.bottom),
               std::max(touched.right, range.right), std::max(touched.top, range.top)};
}

bool is_look_due(const depth_looks &looks)
{
    return looks.unseen >= looks.look_after;
}

void look_at_depths(depth_looks &looks, covered_pixels &covered, const picture_area &area,
                    double vertices_per_second)
{
    weigh(looks, vertices_per_second);
    see_depths(looks, covered, area);
    looks.unseen = 0;
    looks.spared = 0;
}

} // namespace vimbo
