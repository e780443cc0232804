// Where a path's boxes lie among a picture's pixels, without GL.
#pragma once

#include "render/covered_pixels.hpp"
#include "render/path_buffer.hpp"
#include "render/path_chunks.hpp"
#include "render/picture_area.hpp"

namespace vimbo
{

/// A picture's matrix, and the area of a framebuffer that it fills.
struct path_projection {
    path_matrix matrix;
    picture_area area; // in the framebuffer's own rows
    bool upside_down;  // the framebuffer's first row is the picture's top
};

/// A path's lengths go up to this one; the matrix is for shares of it.
inline constexpr double largest_length = 2147483647;

/// The box in pixels of the area, larger by what a driver's single precision may be
/// off by. NaN where the matrix has infinity or NaN.
pixel_box pixels_of(const path_box &box, const path_projection &projection);

/// How many pixels the driver's single precision may be off by within the box. NaN or
/// infinity where the matrix has some.
double rounding_of(const path_box &box, const path_projection &projection);

/// What can be seen in the area at all, and a pixel more on each side.
path_box lengths_in(const path_projection &projection);

bool are_apart(const path_box &a, const path_box &b);

} // namespace vimbo
