#include "render/path_projection.hpp"

#include <algorithm>
#include <cmath>

namespace vimbo
{

namespace
{

// What the driver's single precision may be off by, as a share of what it adds up.
constexpr double rounding = 1.0 / (1 << 20);

struct stretch {
    double low;
    double high;
};

double rounding_of(length_unit from, length_unit to, double scale, double shift, int pixels)
{
    const double most = std::max(std::fabs(from * scale), std::fabs(to * scale)) / largest_length;
    return (most + std::fabs(shift) + 1) * rounding * pixels / 2;
}

// Where a stretch of the path lies along an axis of the picture, in pixels.
stretch pixels_of(length_unit from, length_unit to, double scale, double shift, int pixels)
{
    // Whatever a driver makes of these, nothing may be left out.
    if (!std::isfinite(scale) || !std::isfinite(shift))
        return {std::nan(""), std::nan("")};
    const double a = from / largest_length * scale;
    const double b = to / largest_length * scale;
    const double off = rounding_of(from, to, scale, shift, pixels);
    const double half = pixels / 2.0;
    return {(std::min(a, b) + shift + 1) * half - off, (std::max(a, b) + shift + 1) * half + off};
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

pixel_box pixels_of(const path_box &box, const path_projection &projection)
{
    const GLfloat *m = projection.matrix.element;
    const double turn = projection.upside_down ? -1 : 1;
    const stretch x = pixels_of(box.left, box.right, m[0], m[12], projection.area.width);
    const stretch y =
        pixels_of(box.bottom, box.top, turn * m[5], turn * m[13], projection.area.height);
    return {x.low, y.low, x.high, y.high};
}

double rounding_of(const path_box &box, const path_projection &projection)
{
    const GLfloat *m = projection.matrix.element;
    return std::max(rounding_of(box.left, box.right, m[0], m[12], projection.area.width),
                    rounding_of(box.bottom, box.top, m[5], m[13], projection.area.height));
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
