// The keys that move the editor's cursor. For each of them the toolkit counts from
// the text's beginning for every character of a line, which takes a tenth of a
// second at the end of a long text, and seconds in a long line.
#pragma once

#include "ui/nuklear.hpp"

#include <string_view>

namespace vimbo
{

/// All bytes of the edit.
std::string_view edited_text(const nk_text_edit &edit);

/// Moves the cursor as this layout's keys say, by character, word, row, page,
/// to the ends of line and text, or selects all; with Shift down the selection
/// follows. `rows` is what a page has.
void move_by_keys(nk_context *context, nk_text_edit &edit, int rows);

} // namespace vimbo
