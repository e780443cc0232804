// Whether a Wayland compositor has what GLFW 3.4 takes for granted.
#pragma once

namespace vimbo
{

/// True under a compositor without a seat, which has neither pointer nor keyboard: there
/// GLFW 3.4 ends the program with a segmentation fault as it starts. False where there
/// is a seat, or no compositor.
bool is_seat_missing();

} // namespace vimbo
