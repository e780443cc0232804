#include "platform/desktop_clipboard.hpp"

#include "platform/linux/x_selection.hpp"

#include <GLFW/glfw3.h>

#include <cstring>

namespace vimbo
{

namespace
{

bool is_on_x()
{
#ifdef GLFW_PLATFORM_X11
    return glfwGetPlatform() == GLFW_PLATFORM_X11;
#else
    return std::strstr(glfwGetVersionString(), "X11") != nullptr;
#endif
}

} // namespace

void write_clipboard(GLFWwindow *window, const char *text)
{
    glfwSetClipboardString(window, text);
    if (is_on_x())
        note_own_selection();
}

clipboard_answer read_clipboard(GLFWwindow *window, std::span<char> out)
{
    if (is_on_x())
        return read_selection(out);
    const char *text = glfwGetClipboardString(window);
    if (text == nullptr)
        return clipboard_answer::nothing;
    const std::size_t length = strnlen(text, out.size() - 1);
    std::memcpy(out.data(), text, length);
    out[length] = '\0';
    return clipboard_answer::text;
}

} // namespace vimbo
