#include "render/path_sight.hpp"

#include "render/turned_points.hpp"
#include "render/vertex_pairs.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace vimbo
{

namespace
{

constexpr double most_moved = 0.5; // of an end, along either axis

// An end at a distance `d` from a corner, along either axis, gets to `d * (1 - slope)` beside
// it. So ends of nearly level lines are taken past it from next to it only, which is within
// what rounding is allowed for anyway; and those of others from within four times that,
// unless they are nearly diagonal.
constexpr float nearly_level = 0.125F;
constexpr float nearly_diagonal = 0.75F;
constexpr double farthest_of_others = 1 / (1 - double{nearly_diagonal});

bool is_hidden_around(const covered_pixels &covered, const pixel_box &box, double distance)
{
    const pixel_box around = {box.left - distance, box.bottom - distance, box.right + distance,
                              box.top + distance};
    return is_hidden(covered, around, range_of(covered, around));
}

// Of two lines, in single precision as the driver has them: one that is steeper than that
// against both axes has both lanes of its half set.
four_lengths steeper(const path_vertex *pair, const four_floats &scale, float slope)
{
    constexpr four_lengths magnitude = {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX};
    const four_floats span = (floats_of(pair + 1) - floats_of(pair)) * scale;
    const auto length = std::bit_cast<four_floats>(std::bit_cast<four_lengths>(span) & magnitude);
    const four_floats other = __builtin_shufflevector(length, length, 1, 0, 3, 2);
    const four_lengths longer = length > other * slope;
    return longer & __builtin_shufflevector(longer, longer, 1, 0, 3, 2);
}

// True when a line is steeper than that against both axes. Most strips have next to no
// such lines, or one among the first.
bool has_slopes(std::span<const path_vertex> strip, const path_projection &target, float slope)
{
    constexpr std::size_t lines_at_once = 16;
    const auto x = static_cast<float>(target.x.scale);
    const auto y = static_cast<float>(target.y.scale);
    const four_floats scale = {x, y, x, y};
    const std::size_t lines = strip.size() - 1;
    for (std::size_t first = 0; first < lines; first += lines_at_once) {
        const std::size_t end = std::min(first + lines_at_once, lines);
        four_lengths some = {};
        std::size_t i = first;
        for (; i + 2 <= end; i += 2)
            some |= steeper(&strip[i], scale, slope);
        if (i < end) {
            const path_vertex last[] = {strip[i], strip[i + 1], strip[i + 1]};
            some |= steeper(last, scale, slope);
        }
        if ((some[0] | some[2]) != 0)
            return true;
    }
    return false;
}

// Where rounding decides on which side of an edge it lies.
turned_mask beside_edges(const turned_point &at, double off)
{
    return magnitude_of(at - nearest_whole(at)) >= 0.5 - 2 * off;
}

// True when a line with an end beside such edges goes along them.
bool goes_along(const turned_point &from, const turned_point &to, const turned_mask &edges)
{
    constexpr double level = (1 - double{nearly_level}) / (1 + double{nearly_level});
    const double rising = std::fabs(to[0] - from[0]);
    const double falling = std::fabs(to[1] - from[1]);
    return rising > falling ? edges[1] != 0 && falling < level * rising
                            : edges[0] != 0 && rising <= level * falling;
}

} // namespace

path_part part_of(const covered_pixels &covered, const path_projection &target, const path_box &box,
                  std::int32_t first, std::int32_t end)
{
    const pixel_box pixels = pixels_of(box, target);
    return {first, end, pixels, range_of(covered, pixels), rounding_of(box, target)};
}

path_sight sight_of(const covered_pixels &covered, const path_part &part)
{
    if (part.range.right < part.range.left)
        return path_sight::outside;
    if (!is_hidden(covered, part.box, part.range))
        return path_sight::seen;
    return is_hidden_around(covered, part.box, most_moved) ? path_sight::covered
                                                           : path_sight::doubtful;
}

bool is_doubt_unfounded(const covered_pixels &covered, const path_part &part,
                        std::span<const path_vertex> strip, const path_projection &target)
{
    return !has_slopes(strip, target, nearly_level) ||
           (!has_slopes(strip, target, nearly_diagonal) &&
            is_hidden_around(covered, part.box, farthest_of_others * part.off));
}

std::uint32_t doubtful_lines(std::span<const path_vertex> strip, double off,
                             const path_projection &target)
{
    const turned_projection turned = turn(target);
    turned_point from = {};
    turned_mask edges_before = {};
    std::uint32_t lines = 0;
    for (std::size_t i = 0; i < strip.size(); ++i) {
        const turned_point to = place_of(strip[i], turned);
        const turned_mask edges_now = beside_edges(to, off);
        const turned_mask edges = edges_now | edges_before;
        if (i > 0 && (edges[0] | edges[1]) != 0 && goes_along(from, to, edges))
            lines |= std::uint32_t{1} << (i - 1);
        from = to;
        edges_before = edges_now;
    }
    return lines;
}

} // namespace vimbo
