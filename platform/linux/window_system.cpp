#include "platform/window_system.hpp"

#include <GLFW/glfw3.h>

#ifdef GLFW_PLATFORM
#include "platform/linux/wayland_seat.hpp"
#endif

namespace vimbo
{

#ifdef GLFW_PLATFORM

namespace
{

// What the desktop prefers has been told to have failed; that the other one is not
// there either is no news.
bool start_quietly(int platform)
{
    if (platform == GLFW_PLATFORM_WAYLAND && is_seat_missing())
        return false;
    const GLFWerrorfun told = glfwSetErrorCallback(nullptr);
    glfwInitHint(GLFW_PLATFORM, platform);
    const bool started = glfwInit() == GLFW_TRUE;
    glfwSetErrorCallback(told);
    return started;
}

} // namespace

bool start_window_system()
{
    if (is_seat_missing()) {
        glfwInitHint(GLFW_PLATFORM, GLFW_PLATFORM_X11);
        return glfwInit() == GLFW_TRUE;
    }
    return glfwInit() == GLFW_TRUE || start_quietly(GLFW_PLATFORM_X11) ||
           start_quietly(GLFW_PLATFORM_WAYLAND);
}

bool start_other_window_system()
{
    const int other =
        glfwGetPlatform() == GLFW_PLATFORM_X11 ? GLFW_PLATFORM_WAYLAND : GLFW_PLATFORM_X11;
    glfwTerminate();
    return start_quietly(other);
}

void show_frames_at_once()
{
    if (glfwGetPlatform() == GLFW_PLATFORM_WAYLAND)
        glfwSwapInterval(0);
}

#else

// This GLFW was built for one window system.

bool start_window_system()
{
    return glfwInit() == GLFW_TRUE;
}

bool start_other_window_system()
{
    glfwTerminate();
    return false;
}

// X takes every frame.
void show_frames_at_once() {}

#endif

void hint_window_name(const char *name)
{
    glfwWindowHintString(GLFW_X11_CLASS_NAME, name);
    glfwWindowHintString(GLFW_X11_INSTANCE_NAME, name);
#ifdef GLFW_WAYLAND_APP_ID
    glfwWindowHintString(GLFW_WAYLAND_APP_ID, name);
#endif
}

} // namespace vimbo
