#pragma once

struct GLFWwindow;
struct nk_context;
struct nk_text_edit;

namespace vimbo
{

/// Replaces the backend's clipboard callbacks, which take characters for bytes.
void use_clipboard(GLFWwindow *window, nk_context *context);

/// Puts `text` in place of the edit's selection, as many whole characters of it
/// as fit.
void paste_text(nk_text_edit &edit, const char *text);

} // namespace vimbo
