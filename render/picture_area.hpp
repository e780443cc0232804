// Where in a window or an offscreen picture something is drawn.
#pragma once

#include <GL/glew.h>

namespace vimbo
{

/// A rectangle in GL's window coordinates, origin bottom left, in pixels.
struct picture_area {
    GLint x;
    GLint y;
    GLsizei width;
    GLsizei height;
};

/// Has what is drawn from here on fill the area, and stay within it, until
/// end_area.
void begin_area(const picture_area &area);
void end_area();

/// The grid that the driver rounds places to: how many pixels lie between two of it.
double driver_grid();

} // namespace vimbo
