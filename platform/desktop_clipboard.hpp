// The desktop's clipboard, read with a limit of time where the system allows one:
// what it holds is another program's to hand over, and when that hangs, the window
// must not hang with it. Texts are UTF-8. Main thread only.
#pragma once

#include <cstdint>
#include <span>

struct GLFWwindow;

namespace vimbo
{

enum class clipboard_answer : std::uint8_t { text, own, nothing };

/// Puts the zero-terminated text into the clipboard in the window's name. A desktop
/// that refuses it is GLFW's to report.
void write_clipboard(GLFWwindow *window, const char *text);

/// Reads the clipboard's text into `out`, as many bytes as fit, with a zero at its
/// end; the last character may be cut off. `own`: the text is what write_clipboard
/// was given last, which its caller has to remember; `out` is as it was. `nothing`:
/// there is no text, or it did not come within a second; what `out` holds is then of
/// no use, and need not be a text. A system that has no such case never says `own`.
clipboard_answer read_clipboard(GLFWwindow *window, std::span<char> out);

} // namespace vimbo
