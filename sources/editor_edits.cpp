#include "sources/editor_edits.hpp"

#include "sources/editor_keys.hpp"
#include "sources/text_places.hpp"
#include "ui/take_key.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace vimbo
{

namespace
{

constexpr std::string_view tab_text = "    ";

// Not by the toolkit's insertion, which leaves a full text's last byte out and
// counts from the text's beginning.
void splice(nk_text_edit &edit, std::size_t position, std::size_t removed,
            std::string_view inserted)
{
    char *text = static_cast<char *>(edit.string.buffer.memory.ptr);
    const std::string_view tail = edited_text(edit).substr(position + removed);
    const std::size_t inserted_end = position + inserted.size();
    std::memmove(text + inserted_end, tail.data(), tail.size());
    inserted.copy(text + position, inserted.size()); // not memcpy: it may be empty
    edit.string.buffer.allocated = inserted_end + tail.size();
    edit.string.len = character_count(edited_text(edit));
}

void place_cursor(nk_text_edit &edit, std::size_t at)
{
    edit.cursor = character_count(edited_text(edit).substr(0, at));
    edit.select_start = edit.cursor;
    edit.select_end = edit.cursor;
    edit.has_preferred_x = 0;
}

// The selection, or where there is none the cursor's place.
text_range selection_of(const nk_text_edit &edit)
{
    const std::string_view text = edited_text(edit);
    if (edit.select_start == edit.select_end) {
        const std::size_t cursor = character_offset(text, edit.cursor);
        return {cursor, cursor};
    }
    return {character_offset(text, std::min(edit.select_start, edit.select_end)),
            character_offset(text, std::max(edit.select_start, edit.select_end))};
}

void replace(nk_text_edit &edit, edit_history &history, const text_range &range,
             std::string_view inserted, edit_kind kind)
{
    const std::string_view text = edited_text(edit);
    const std::size_t cursor_after = range.first + inserted.size();
    note_edit(history, {kind, range.first, text.substr(range.first, range.last - range.first),
                        inserted, character_offset(text, edit.cursor), cursor_after});
    splice(edit, range.first, range.last - range.first, inserted);
    place_cursor(edit, cursor_after);
}

void apply(nk_text_edit &edit, const text_change &change)
{
    splice(edit, change.position, change.removed, change.inserted);
    place_cursor(edit, change.cursor);
}

void undo_and_redo(nk_context *context, nk_text_edit &edit, edit_history &history)
{
    text_change change = {};
    if (take_key(context, NK_KEY_TEXT_UNDO) && take_undo(history, change))
        apply(edit, change);
    if (take_key(context, NK_KEY_TEXT_REDO) && take_redo(history, change))
        apply(edit, change);
}

// What the key takes away: the selection, a character, or with Control a word.
text_range range_to_erase(const nk_text_edit &edit, bool forward, bool word)
{
    text_range range = selection_of(edit);
    if (range.first != range.last)
        return range;
    const std::string_view text = edited_text(edit);
    const std::size_t to = word ? word_step(text, range.first, forward)
                                : character_offset(text, edit.cursor + (forward ? 1 : -1));
    (forward ? range.last : range.first) = to;
    return range;
}

void erase(nk_context *context, nk_text_edit &edit, edit_history &history, nk_keys key)
{
    if (!take_key(context, key))
        return;
    const bool forward = key == NK_KEY_DEL;
    const bool word = context->input.keyboard.keys[NK_KEY_CTRL].down != 0;
    edit_kind kind = edit_kind::whole;
    if (!word && edit.select_start == edit.select_end)
        kind = forward ? edit_kind::erased_behind : edit_kind::erased_before;
    replace(edit, history, range_to_erase(edit, forward, word), {}, kind);
}

void copy_and_cut(nk_context *context, nk_text_edit &edit, edit_history &history)
{
    const bool copy = take_key(context, NK_KEY_COPY);
    const bool cut = take_key(context, NK_KEY_CUT);
    const text_range range = selection_of(edit);
    if ((!copy && !cut) || range.first == range.last)
        return;
    if (context->clip.copy != nullptr)
        context->clip.copy(context->clip.userdata, edited_text(edit).data() + range.first,
                           std::abs(edit.select_end - edit.select_start));
    if (cut)
        replace(edit, history, range, {}, edit_kind::whole);
}

// By way of an edit of its own, so that what arrives is seen before it is put in.
void paste(nk_context *context, nk_text_edit &edit, edit_history &history, paste_memory memory)
{
    if (!take_key(context, NK_KEY_PASTE) || context->clip.paste == nullptr)
        return;
    nk_text_edit arrived;
    nk_textedit_init_fixed(&arrived, memory.data(), memory.size());
    arrived.single_line = 0;
    arrived.mode = NK_TEXT_EDIT_MODE_INSERT;
    context->clip.paste(context->clip.userdata, &arrived);
    const std::string_view text = edited_text(arrived);
    if (!text.empty())
        insert_text(edit, history, text, edit_kind::whole);
}

} // namespace

void insert_text(nk_text_edit &edit, edit_history &history, std::string_view text, edit_kind kind)
{
    const text_range range = selection_of(edit);
    const std::size_t kept = edit.string.buffer.allocated - (range.last - range.first);
    // The toolkit, too, leaves the last byte free when it inserts.
    const std::size_t room =
        edit.string.buffer.memory.size - std::min(kept + 1, edit.string.buffer.memory.size);
    const std::string_view fitting = text.substr(0, room);
    replace(edit, history, range, fitting.substr(0, character_offset(fitting, INT_MAX)), kind);
}

void note_loaded(const nk_text_edit &edit, edit_history &history, std::string_view loaded)
{
    const std::string_view former = edited_text(edit);
    const bool first = former.empty() && history.record_count == 0;
    if (!first && former != loaded)
        note_edit(history,
                  {edit_kind::whole, 0, former, loaded, character_offset(former, edit.cursor), 0});
}

void edit_by_keys(nk_context *context, nk_text_edit &edit, edit_history &history,
                  paste_memory memory)
{
    undo_and_redo(context, edit, history);
    erase(context, edit, history, NK_KEY_DEL);
    erase(context, edit, history, NK_KEY_BACKSPACE);
    nk_keyboard &keyboard = context->input.keyboard;
    if (keyboard.text_len > 0)
        insert_text(edit, history, {keyboard.text, static_cast<std::size_t>(keyboard.text_len)},
                    edit_kind::typed);
    keyboard.text_len = 0;
    if (take_key(context, NK_KEY_ENTER))
        insert_text(edit, history, "\n", edit_kind::typed);
    copy_and_cut(context, edit, history);
    paste(context, edit, history, memory);
    if (take_key(context, NK_KEY_TAB))
        insert_text(edit, history, tab_text, edit_kind::typed);
}

} // namespace vimbo
