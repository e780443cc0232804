// The clipboard of X desktops. GLFW waits for a selection's owner without end, and its
// connection has to stay as it is: this is another one, for as long as it takes.
#pragma once

#include "platform/desktop_clipboard.hpp"

namespace vimbo
{

/// To be called right after GLFW has put a text of ours into the clipboard.
void note_own_selection();

/// As read_clipboard.
clipboard_answer read_selection(std::span<char> out);

} // namespace vimbo
