// The desktop's clipboard, read with a limit of time: what it holds is another
// program's to hand over, and when that hangs, the window must not hang with it.
// Main thread only.
#pragma once

#include <cstdint>
#include <span>

namespace vimbo
{

enum class clipboard_answer : std::uint8_t { text, own, nothing };

/// To be called right after this program has put a text into the clipboard.
void note_own_clipboard();

/// Reads the clipboard's text into `out`, as much as fits, with a zero at its
/// end. `own`: the text is this program's own, which has to remember it; `out` is
/// as it was. `nothing`: there is no text, or it did not come in time.
clipboard_answer read_clipboard(std::span<char> out);

} // namespace vimbo
