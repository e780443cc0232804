// What the editor's keys change of its text, each change noted for undo. The
// toolkit's own way costs the text's length for every character typed, and tells
// nobody what it changed.
#pragma once

#include "sources/edit_history.hpp"
#include "sources/text_file.hpp"
#include "ui/nuklear.hpp"

#include <span>
#include <string_view>

namespace vimbo
{

/// Where a pasted text stands before it enters the editor.
using paste_memory = std::span<char, source_capacity>;

/// Puts the text, as many whole characters as fit, in place of the selection and
/// the cursor behind it.
void insert_text(nk_text_edit &edit, edit_history &history, std::string_view text, edit_kind kind);

/// Notes that another text is about to take the place of all of the edit's. There is
/// nothing to go back to from the first one.
void note_loaded(const nk_text_edit &edit, edit_history &history, std::string_view loaded);

/// Does what this layout's keys and characters say, in the toolkit's order: undo
/// and redo, taking away, typing, Enter, copying and cutting, pasting, the tab.
void edit_by_keys(nk_context *context, nk_text_edit &edit, edit_history &history,
                  paste_memory memory);

} // namespace vimbo
