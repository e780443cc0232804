#pragma once

#include <cstddef>

struct GLFWwindow;
struct nk_context;
struct nk_text_edit;

namespace vimbo
{

/// A full source and its zero.
inline constexpr std::size_t clipboard_capacity = 65536 + 1;

/// Main thread only.
struct clipboard_state {
    GLFWwindow *window;
    /// What was copied last, until another program's text is pasted. GLFW wants it
    /// with a zero at its end.
    char text[clipboard_capacity];
};

/// Replaces the backend's clipboard callbacks, which take characters for bytes.
/// The record must outlive the context.
void serve_clipboard(GLFWwindow *window, nk_context *context, clipboard_state &clipboard);

/// Keeps the text's first `characters` characters, as many as fit. False, with
/// what was kept before, when there are none to copy.
bool take_copy(clipboard_state &clipboard, const char *text, int characters);

/// Puts `text` in place of the edit's selection, as many whole characters of it
/// as fit.
void paste_text(nk_text_edit &edit, const char *text);

} // namespace vimbo
