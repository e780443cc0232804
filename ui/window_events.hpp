// The window system's side of the input: GLFW's callbacks, and which of its keys is
// which of the toolkit's. Main thread only.
#pragma once

#include "ui/input_queue.hpp"

struct GLFWwindow;

namespace vimbo
{

/// Has the window's events queued, in place of the backend's own callbacks. The
/// queue must outlive the window.
void watch_input(GLFWwindow *window, input_queue &queue);

/// The backend's new frame without its input.
void begin_backend_frame(nk_context *context);

} // namespace vimbo
