#include "render/path_projection.hpp"

#include <algorithm>
#include <cmath>

namespace vimbo
{

namespace
{

// What the driver's single precision may be off by, as a share of what it adds up, and
// as one of the area's place in the framebuffer, which it adds in the end.
constexpr double rounding = 1.0 / (1 << 20);
constexpr double last_rounding = 1.0 / (1 << 23);

// How far it rounds to its grid, in steps: as far as Direct3D allows; GL says nothing.
constexpr double grid_rounding = 0.6;

struct stretch {
    double low;
    double high;
};

pixel_axis axis_of(double scale, double shift, int start, int pixels, double grid)
{
    const double half = pixels / 2.0;
    // Whatever a driver makes of these, nothing may be left out.
    if (!std::isfinite(scale) || !std::isfinite(shift))
        scale = std::nan("");
    const double by_length = scale * half / largest_length;
    return {by_length, (shift + 1) * half, std::fabs(by_length) * rounding,
            std::fabs(shift) * half * rounding + (start + pixels) * last_rounding +
                grid * grid_rounding};
}

double off_within(length_unit from, length_unit to, const pixel_axis &axis)
{
    return std::max(std::fabs(static_cast<double>(from)), std::fabs(static_cast<double>(to))) *
               axis.off_by_length +
           axis.off;
}

// Where a stretch of the path lies along an axis of the picture, in pixels.
stretch pixels_of(length_unit from, length_unit to, const pixel_axis &axis)
{
    const double a = from * axis.scale;
    const double b = to * axis.scale;
    const double off = off_within(from, to, axis);
    return {std::min(a, b) + axis.shift - off, std::max(a, b) + axis.shift + off};
}

// The other way round: lengths that can be seen at all, with a pixel more.
stretch lengths_in(double scale, double shift, int pixels)
{
    if (!(scale > 0) || !std::isfinite(scale) || !std::isfinite(shift))
        return {INT32_MIN, INT32_MAX};
    const double edge = 1 + 4.0 / pixels + (2 + 2 * std::fabs(shift)) * rounding;
    const auto length = [&](double at) { return (at - shift) / scale * largest_length; };
    return {std::clamp(length(-edge) - 1, double{INT32_MIN}, double{INT32_MAX}),
            std::clamp(length(edge) + 1, double{INT32_MIN}, double{INT32_MAX})};
}

} // namespace

path_projection project(const path_matrix &matrix, const picture_area &area, bool upside_down,
                        double grid)
{
    const GLfloat *m = matrix.element;
    const double turn = upside_down ? -1 : 1;
    return {matrix, area, upside_down, axis_of(m[0], m[12], area.x, area.width, grid),
            axis_of(turn * m[5], turn * m[13], area.y, area.height, grid)};
}

pixel_box pixels_of(const path_box &box, const path_projection &projection)
{
    const stretch x = pixels_of(box.left, box.right, projection.x);
    const stretch y = pixels_of(box.bottom, box.top, projection.y);
    return {x.low, y.low, x.high, y.high};
}

double rounding_of(const path_box &box, const path_projection &projection)
{
    const double x = off_within(box.left, box.right, projection.x);
    const double y = off_within(box.bottom, box.top, projection.y);
    return std::isnan(y) ? y : std::max(x, y);
}

path_box lengths_in(const path_projection &projection)
{
    const GLfloat *m = projection.matrix.element;
    const stretch x = lengths_in(m[0], m[12], projection.area.width);
    const stretch y = lengths_in(m[5], m[13], projection.area.height);
    return {static_cast<length_unit>(x.low), static_cast<length_unit>(y.low),
            static_cast<length_unit>(x.high), static_cast<length_unit>(y.high)};
}

bool are_apart(const path_box &a, const path_box &b)
{
    return a.right < b.left || b.right < a.left || a.top < b.bottom || b.top < a.bottom;
}

} // namespace vimbo
