// From the window's units to the framebuffer's pixels, for what Nuklear is to draw.
#pragma once

#include "ui/draw_commands.hpp"

namespace vimbo
{

struct pixel_ratio;

/// Has the commands, which count in the window's units, count in pixels: every edge goes
/// to the nearest one. What touched still touches, and nothing is blurred between two
/// pixels, as it would be if what is drawn were scaled. For the kinds of commands that
/// list_commands knows. They are of no use to anything but the backend after that.
void put_on_pixels(const draw_commands &commands, const pixel_ratio &ratio);

} // namespace vimbo
