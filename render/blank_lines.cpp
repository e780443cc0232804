#include "render/blank_lines.hpp"

#include "render/turned_points.hpp"

#include <limits>

namespace vimbo
{

namespace
{

// All bits set where they are in both, or none.
turned_mask in_both(const turned_mask &mask)
{
    return mask & __builtin_shufflevector(mask, mask, 1, 0);
}

// True when rounding cannot bring it out of its square. llvmpipe also draws lines that end
// right on a line through a pixel's middle. An end is beside its place by twice as much as
// along x or y.
turned_mask is_certain(const turned_point &at, const turned_point &middle, double off)
{
    const turned_point beside = at - middle;
    const turned_point along_axes = __builtin_shufflevector(beside, beside, 0, 0) +
                                    __builtin_shufflevector(beside, -beside, 1, 3);
    return in_both((magnitude_of(beside) <= 0.5 - 2 * off) & (magnitude_of(along_axes) >= 2 * off));
}

} // namespace

std::uint32_t lines_with_pixels(std::span<const path_vertex> strip, double off,
                                const path_projection &target)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const turned_point nowhere = {nan, nan};
    const turned_projection turned = turn(target);
    turned_point before = nowhere;
    std::uint32_t lines = 0;
    for (std::size_t i = 0; i < strip.size(); ++i) {
        const turned_point at = place_of(strip[i], turned);
        const turned_point square = nearest_whole(at);
        const turned_point now = is_certain(at, square, off) ? square : nowhere;
        const turned_mask is_blank = now == before;
        if (i > 0 && (is_blank[0] & is_blank[1]) == 0)
            lines |= std::uint32_t{1} << (i - 1);
        before = now;
    }
    return lines;
}

} // namespace vimbo
