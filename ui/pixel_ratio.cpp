#include "ui/pixel_ratio.hpp"

#include "ui/nuklear.hpp"

#include <algorithm>
#include <cmath>

namespace vimbo
{

namespace
{

float quotient(std::int32_t pixels, std::int32_t units)
{
    return pixels > 0 && units > 0 ? static_cast<float>(pixels) / static_cast<float>(units) : 1.0F;
}

} // namespace

pixel_ratio ratio_of(std::int32_t window_width, std::int32_t window_height,
                     std::int32_t framebuffer_width, std::int32_t framebuffer_height)
{
    return {quotient(framebuffer_width, window_width), quotient(framebuffer_height, window_height)};
}

std::int32_t in_pixels(std::int32_t units, float ratio)
{
    return static_cast<std::int32_t>(std::lround(static_cast<float>(units) * ratio));
}

struct nk_rect in_pixels(const struct nk_rect &rectangle, const pixel_ratio &ratio)
{
    return {rectangle.x * ratio.x, rectangle.y * ratio.y, rectangle.w * ratio.x,
            rectangle.h * ratio.y};
}

float glyph_pixels(float units, const pixel_ratio &ratio)
{
    return units * std::max(ratio.x, ratio.y);
}

} // namespace vimbo
