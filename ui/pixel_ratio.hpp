// From the window's units, which layout and input count in, to the framebuffer's
// pixels, which are drawn. The one place that knows how the two differ.
#pragma once

#include <cstdint>

struct nk_rect;

namespace vimbo
{

/// Pixels in one of the window's units, along each axis.
struct pixel_ratio {
    float x = 1;
    float y = 1;

    bool operator==(const pixel_ratio &) const = default;
};

/// The ratio of two sizes that a window system tells; 1 along an axis where it tells
/// none, as of a window that is hidden.
pixel_ratio ratio_of(std::int32_t window_width, std::int32_t window_height,
                     std::int32_t framebuffer_width, std::int32_t framebuffer_height);

/// A length along an axis in pixels, rounded to whole ones: the framebuffer's size for
/// the window's.
std::int32_t in_pixels(std::int32_t units, float ratio);

/// A rectangle of the layout in pixels, not rounded.
struct nk_rect in_pixels(const struct nk_rect &rectangle, const pixel_ratio &ratio);

/// The height in pixels at which a font is to be baked that is `units` high.
float glyph_pixels(float units, const pixel_ratio &ratio);

} // namespace vimbo
