// The window, its GL context, Nuklear with its font, and what is made once on
// the GPU.
#pragma once

#include "app/app_state.hpp"

struct GLFWwindow;

namespace vimbo
{

/// Makes all of it. Null after a failure that the program cannot go on from,
/// told in one line on standard error.
GLFWwindow *open_window(app_state &app);

/// Reads the window's size and what of the framebuffer it takes, and has GL draw on all
/// of that.
void read_window_size(GLFWwindow *window, frame_state &frame);

/// True when GL can be used after glewInit has answered so.
bool has_gl_functions(unsigned int glew_answer);

/// Shuts Nuklear and GLFW down.
void close_window();

} // namespace vimbo
