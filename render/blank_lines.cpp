#include "render/blank_lines.hpp"

#include <cmath>
#include <limits>

namespace vimbo
{

namespace
{

// Added and taken away again, it rounds to the nearest whole number, which takes no call.
constexpr double rounder = 0x1.8p52;

// A point along the squares' sides, x + y and x - y, where their middles are whole numbers.
struct turned_point {
    double rising;
    double falling;
};

double nearest_whole(double number)
{
    return number + rounder - rounder;
}

// True when rounding cannot bring it out of its square. llvmpipe also draws lines that end
// right on a line through a pixel's middle. An end is beside its place by twice as much as
// along x or y.
bool is_certain(const turned_point &point, const turned_point &middle, double off)
{
    const double rising = point.rising - middle.rising;
    const double falling = point.falling - middle.falling;
    return std::fabs(rising) <= 0.5 - 2 * off && std::fabs(falling) <= 0.5 - 2 * off &&
           std::fabs(rising + falling) >= 2 * off && std::fabs(rising - falling) >= 2 * off;
}

} // namespace

std::uint32_t lines_with_pixels(std::span<const path_vertex> strip, double off,
                                const path_projection &target)
{
    constexpr turned_point nowhere = {std::numeric_limits<double>::quiet_NaN(), 0};
    const turned_point shift = {target.x.shift + target.y.shift, target.x.shift - target.y.shift};
    turned_point before = nowhere;
    std::uint32_t lines = 0;
    for (std::size_t i = 0; i < strip.size(); ++i) {
        const double x = strip[i].x * target.x.scale;
        const double y = strip[i].y * target.y.scale;
        const turned_point at = {x + y + shift.rising, x - y + shift.falling};
        const turned_point square = {nearest_whole(at.rising), nearest_whole(at.falling)};
        const turned_point now = is_certain(at, square, off) ? square : nowhere;
        const bool is_blank = now.rising == before.rising && now.falling == before.falling;
        if (i > 0 && !is_blank)
            lines |= std::uint32_t{1} << (i - 1);
        before = now;
    }
    return lines;
}

} // namespace vimbo
