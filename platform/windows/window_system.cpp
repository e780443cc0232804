#include "platform/window_system.hpp"

#include <GLFW/glfw3.h>

namespace vimbo
{

bool start_window_system()
{
    return glfwInit() == GLFW_TRUE;
}

bool start_other_window_system()
{
    glfwTerminate();
    return false;
}

// The system takes every frame.
void show_frames_at_once() {}

// The executable's own icon and name are what the desktop goes by.
void hint_window_name(const char * /*name*/) {}

} // namespace vimbo
