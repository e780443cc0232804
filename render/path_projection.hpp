// Where a path's boxes lie among a picture's pixels, without GL.
#pragma once

#include "render/covered_pixels.hpp"
#include "render/path_buffer.hpp"
#include "render/path_chunks.hpp"
#include "render/picture_area.hpp"

namespace vimbo
{

/// Along one axis of an area, a length lies at `length * scale + shift` pixels; the driver,
/// which computes in single precision and rounds to a grid, puts it at most
/// `|length| * off_by_length + off` beside that. NaN where the matrix has infinity or NaN.
struct pixel_axis {
    double scale;
    double shift;
    double off_by_length;
    double off;
};

/// A picture's matrix, and the area of a framebuffer that it fills.
struct path_projection {
    path_matrix matrix;
    picture_area area; // in the framebuffer's own rows
    bool upside_down;  // the framebuffer's first row is the picture's top
    pixel_axis x;
    pixel_axis y; // upwards
};

/// A path's lengths go up to this one; the matrix is for shares of it.
inline constexpr double largest_length = 2147483647;

/// What the rest says of the axes; `grid` is the driver's, in pixels (driver_grid).
path_projection project(const path_matrix &matrix, const picture_area &area, bool upside_down,
                        double grid);

/// The box in pixels of the area, larger by what a driver may be off by.
pixel_box pixels_of(const path_box &box, const path_projection &projection);

/// How many pixels a driver may be off by along either axis, within the box.
double rounding_of(const path_box &box, const path_projection &projection);

/// What can be seen in the area at all, and a pixel more on each side.
path_box lengths_in(const path_projection &projection);

bool are_apart(const path_box &a, const path_box &b);

} // namespace vimbo
