#include "sources/source_editor.hpp"

#include "sources/editor_keys.hpp"
#include "sources/text_places.hpp"
#include "ui/edit_focus.hpp"
#include "ui/take_key.hpp"
#include "ui/takes_input.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vimbo
{

namespace
{

std::string_view text_of(const source_editor_state &editor)
{
    return {editor.source_text, editor.source_edit.string.buffer.allocated};
}

void uncover_end(source_editor_state &editor)
{
    editor.source_text[editor.covered_index] = editor.covered_byte;
}

// The mark stands at the count of characters, so a text with characters of
// several bytes loses its end when it is saved or evaluated. The byte below is
// put back before the editor works on, or typing on would eat into the text.
void cover_end(source_editor_state &editor)
{
    editor.covered_index = nk_str_len(&editor.source_edit.string);
    editor.covered_byte = editor.source_text[editor.covered_index];
    editor.source_text[editor.covered_index] = '\0';
}

void note_text(source_editor_state &editor)
{
    const std::string_view text = text_of(editor);
    std::memcpy(editor.noted_text, text.data(), text.size());
    editor.noted_length = static_cast<int>(text.size());
}

void note_edit(source_editor_state &editor)
{
    const std::string_view before(editor.noted_text, static_cast<std::size_t>(editor.noted_length));
    if (text_of(editor) == before)
        return;
    note_change(editor.history, before, text_of(editor));
    note_text(editor);
}

// Puts the text there as it is and at once. Inserting it as if it were typed
// would take seconds, and drop the line feeds until the editor was clicked.
void replace_text(source_editor_state &editor, std::string_view text)
{
    std::memset(editor.source_text, 0, sizeof editor.source_text);
    nk_textedit_init_fixed(&editor.source_edit, editor.source_text, source_capacity);
    editor.source_edit.single_line = 0;
    if (!text.empty())
        nk_str_append_text_char(&editor.source_edit.string, text.data(),
                                static_cast<int>(text.size()));
}

void apply_change(source_editor_state &editor, const text_change &change)
{
    nk_text_edit &edit = editor.source_edit;
    const std::string_view tail = text_of(editor).substr(change.position + change.removed);
    const std::size_t inserted_end = change.position + change.inserted.size();
    // Not nk_str_insert_at_char, which leaves a full text's last byte out.
    std::memmove(editor.source_text + inserted_end, tail.data(), tail.size());
    std::memcpy(editor.source_text + change.position, change.inserted.data(),
                change.inserted.size());
    edit.string.buffer.allocated = inserted_end + tail.size();
    edit.string.len = character_count(text_of(editor));
    edit.cursor = character_count(text_of(editor).substr(0, inserted_end));
    edit.select_start = edit.cursor;
    edit.select_end = edit.cursor;
    edit.has_preferred_x = 0;
    note_text(editor);
}

void go_to_line(source_editor_state &editor, int line)
{
    const std::string_view text = text_of(editor);
    nk_text_edit &edit = editor.source_edit;
    edit.cursor = character_count(text.substr(0, line_start(text, 0, line - 1)));
    edit.select_start = edit.cursor;
    edit.select_end = edit.cursor;
    edit.has_preferred_x = 0;
}

void undo_and_redo(nk_context *context, source_editor_state &editor)
{
    text_change change = {};
    if (take_key(context, NK_KEY_TEXT_UNDO) && take_undo(editor.history, change))
        apply_change(editor, change);
    if (take_key(context, NK_KEY_TEXT_REDO) && take_redo(editor.history, change))
        apply_change(editor, change);
}

struct text_view {
    float row_height;
    int rows; // that are seen whole, at least one
    float width;
};

text_view view_of(const nk_context *context, const struct nk_rect &bounds)
{
    const nk_style_edit &style = context->style.edit;
    const float row_height = context->style.font->height + style.row_padding;
    const float height = bounds.h - 2 * (style.padding.y + style.border);
    const float width = bounds.w - 2 * (style.padding.x + style.border) - style.scrollbar_size.x -
                        style.cursor_size;
    return {row_height, std::max(1, static_cast<int>(height / row_height)), width};
}

// The toolkit follows the cursor by one row and a quarter of the width, however
// far it went.
void show_cursor(nk_text_edit &edit, std::string_view text, const text_view &view,
                 const nk_user_font &font)
{
    const std::string_view above = text.substr(0, character_offset(text, edit.cursor));
    const auto row = static_cast<float>(std::ranges::count(above, '\n'));
    const float last = row - static_cast<float>(view.rows) + 1;
    edit.scrollbar.y =
        std::clamp(edit.scrollbar.y, std::max(0.0F, last * view.row_height), row * view.row_height);

    const std::string_view before = above.substr(line_start(text, above.size(), 0));
    const float x = text_width(font, before);
    const float ahead = view.width / 4;
    if (x < edit.scrollbar.x)
        edit.scrollbar.x = std::max(0.0F, std::floor(x - ahead));
    if (x >= edit.scrollbar.x + view.width)
        edit.scrollbar.x = std::max(0.0F, std::floor(x + ahead - view.width));
}

} // namespace

void initialise_source_editor(source_editor_state &editor)
{
    replace_text(editor, {});
    cover_end(editor);
}

void load_source(source_editor_state &editor, const char *path)
{
    const char *text = read_text_file(path, editor.load_buffer);
    replace_text(editor, {text, strnlen(text, source_capacity)});
    clear_history(editor.history);
    note_text(editor);
    cover_end(editor);
}

void show_line(source_editor_state &editor, int line)
{
    editor.wants_focus = true;
    editor.wanted_line = line;
}

void source_editor(frame_state &frame, source_editor_state &editor)
{
    nk_context *context = frame.context;
    nk_text_edit &edit = editor.source_edit;
    const struct nk_rect bounds = nk_widget_bounds(context);
    const text_view view = view_of(context, bounds);
    const int cursor_before = edit.cursor;

    uncover_end(editor);
    if (editor.wanted_line != 0) {
        go_to_line(editor, editor.wanted_line);
        show_cursor(edit, text_of(editor), view, *context->style.font);
    }
    editor.wanted_line = 0;
    focus_when_pressed(context, bounds);
    if (editor.wants_focus)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
    editor.wants_focus = false;
    if (edit.active != 0 && takes_input(context)) {
        undo_and_redo(context, editor);
        move_by_keys(context, edit, view.rows);
    }
    edit_keeping_focus(context, NK_EDIT_BOX, edit, bounds);
    note_edit(editor);
    if (edit.cursor != cursor_before)
        show_cursor(edit, text_of(editor), view, *context->style.font);
    cover_end(editor);
}

} // namespace vimbo
