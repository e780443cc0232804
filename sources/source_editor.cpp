#include "sources/source_editor.hpp"

#include "sources/editor_edits.hpp"
#include "sources/editor_keys.hpp"
#include "sources/editor_search.hpp"
#include "sources/text_places.hpp"
#include "ui/edit_focus.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace vimbo
{

namespace
{

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

// Seconds since the last layout that was seen, as far as scrolling counts them;
// none in one that is not.
float take_seconds(const frame_state &frame, source_editor_state &editor)
{
    constexpr double longest = 0.1;
    if (frame.input_only)
        return 0;
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    const double since = now.count() - editor.laid_out_at;
    editor.laid_out_at = now.count();
    return static_cast<float>(std::min(since, longest));
}

// Those that only copy or select all leave the view where it is.
bool moves_view(const nk_context *context)
{
    const nk_input &input = context->input;
    for (int key = 0; key < NK_KEY_MAX; ++key)
        if (key != NK_KEY_COPY && key != NK_KEY_TEXT_SELECT_ALL &&
            nk_input_is_key_pressed(&input, static_cast<nk_keys>(key)) != 0)
            return true;
    return input.keyboard.text_len > 0;
}

void follow_keys(nk_context *context, source_editor_state &editor, const editor_view &view)
{
    nk_text_edit &edit = editor.source_edit;
    const bool show = moves_view(context);
    move_by_keys(context, edit, view.rows);
    search_by_keys(context, edit);
    edit_by_keys(context, edit, editor.history, editor.paste_buffer);
    if (show)
        show_cursor(edit, view, *context->style.font);
}

// Takes up what was asked of the editor since its last layout.
void follow_requests(nk_context *context, source_editor_state &editor, const editor_view &view)
{
    nk_text_edit &edit = editor.source_edit;
    if (editor.wanted_line != 0) {
        const std::string_view text = edited_text(edit);
        edit.cursor = character_count(text.substr(0, line_start(text, 0, editor.wanted_line - 1)));
        edit.select_start = edit.cursor;
        edit.select_end = edit.cursor;
        edit.has_preferred_x = 0;
        show_cursor(edit, view, *context->style.font);
    }
    editor.wanted_line = 0;
    if (editor.wants_focus)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
    editor.wants_focus = false;
    keep_focus(context, edit);
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
    const std::string_view loaded(text, strnlen(text, source_capacity));
    uncover_end(editor);
    note_loaded(editor.source_edit, editor.history, loaded);
    replace_text(editor, loaded);
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
    const editor_view view = view_of(context, nk_widget_bounds(context));

    uncover_end(editor);
    follow_requests(context, editor, view);
    follow_mouse(context, edit, view, editor.mouse, take_seconds(frame, editor));
    if (takes_keys(context))
        follow_keys(context, editor, view);
    lay_out_edit(context, edit, view, editor.mouse);
    cover_end(editor);
}

} // namespace vimbo
