// For window systems of which GLFW tells where the pointer comes in.
#include "platform/window_system.hpp"

namespace vimbo
{

bool watch_pointer_entry(GLFWwindow * /*window*/,
                         void (* /*entered*/)(GLFWwindow *window, double x, double y))
{
    return false;
}

void unwatch_pointer_entry() {}

} // namespace vimbo
