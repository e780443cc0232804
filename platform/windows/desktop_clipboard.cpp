#include "platform/desktop_clipboard.hpp"

#include <GLFW/glfw3.h>
#include <windows.h>

#include <cstring>

namespace vimbo
{

namespace
{

// A text may still be its owner's to make, and the system waits for that without end.
bool owner_answers()
{
    constexpr UINT patience = 1000; // milliseconds
    HWND owner = GetClipboardOwner();
    DWORD_PTR answer = 0;
    return owner == nullptr ||
           SendMessageTimeoutW(owner, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, patience, &answer) != 0;
}

} // namespace

void write_clipboard(GLFWwindow *window, const char *text)
{
    glfwSetClipboardString(window, text);
}

clipboard_answer read_clipboard(GLFWwindow *window, std::span<char> out)
{
    // GLFW would call a picture an error.
    if (IsClipboardFormatAvailable(CF_UNICODETEXT) == FALSE || !owner_answers())
        return clipboard_answer::nothing;
    const char *text = glfwGetClipboardString(window);
    if (text == nullptr)
        return clipboard_answer::nothing;
    const std::size_t length = strnlen(text, out.size() - 1);
    std::memcpy(out.data(), text, length);
    out[length] = '\0';
    return clipboard_answer::text;
}

} // namespace vimbo
