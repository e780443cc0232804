#include "sources/source_editor.hpp"

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

} // namespace

void initialise_source_editor(source_editor_state &editor)
{
    nk_textedit_init_fixed(&editor.source_edit, editor.source_text, source_capacity);
    cover_end(editor);
}

void load_source(source_editor_state &editor, const char *path)
{
    const char *text = read_text_file(path, editor.load_buffer);
    const auto length = static_cast<int>(strnlen(text, source_capacity));
    // Appending to the edit's string takes the text as it is and at once;
    // inserting it as if it were typed would take seconds, and drop the line
    // feeds until the editor was clicked.
    std::memset(editor.source_text, 0, sizeof editor.source_text);
    nk_textedit_init_fixed(&editor.source_edit, editor.source_text, source_capacity);
    nk_str_append_text_char(&editor.source_edit.string, text, length);
    cover_end(editor);
}

void source_editor(frame_state &frame, source_editor_state &editor)
{
    uncover_end(editor);
    nk_edit_buffer(frame.context, NK_EDIT_BOX, &editor.source_edit, nk_filter_default);
    cover_end(editor);
}

} // namespace vimbo
