#include "sources/editor_keys.hpp"

#include "sources/text_places.hpp"
#include "ui/take_key.hpp"
#include "ui/utf8.hpp"

#include <algorithm>

namespace vimbo
{

namespace
{

bool is_selecting(const nk_context *context)
{
    return context->input.keyboard.keys[NK_KEY_SHIFT].down != 0;
}

// Byte where a movement begins: a selection that is given up is left at the end
// that the movement goes toward.
std::size_t origin(const nk_context *context, const nk_text_edit &edit, bool forward)
{
    const std::string_view text = edited_text(edit);
    if (is_selecting(context) || edit.select_start == edit.select_end)
        return character_offset(text, edit.cursor);
    return character_offset(text, forward ? std::max(edit.select_start, edit.select_end)
                                          : std::min(edit.select_start, edit.select_end));
}

void move_cursor(const nk_context *context, nk_text_edit &edit, std::size_t to)
{
    if (edit.select_start == edit.select_end)
        edit.select_start = edit.cursor;
    edit.cursor = character_count(edited_text(edit).substr(0, to));
    edit.select_end = edit.cursor;
    if (!is_selecting(context))
        edit.select_start = edit.cursor;
    edit.has_preferred_x = 0;
}

void move_by_page(nk_context *context, nk_text_edit &edit, int rows)
{
    const bool up = take_key(context, NK_KEY_SCROLL_UP);
    const bool down = take_key(context, NK_KEY_SCROLL_DOWN);
    const std::string_view text = edited_text(edit);
    if (up != down)
        move_cursor(context, edit,
                    line_start(text, character_offset(text, edit.cursor), up ? -rows : rows));
}

void move_by_row(nk_context *context, nk_text_edit &edit)
{
    const bool up = take_key(context, NK_KEY_UP);
    const bool down = take_key(context, NK_KEY_DOWN);
    if (up == down)
        return;
    const std::string_view text = edited_text(edit);
    const nk_user_font &font = *context->style.font;
    const std::size_t from = origin(context, edit, down);
    const std::size_t start = line_start(text, from);
    const std::size_t to = line_start(text, from, up ? -1 : 1);
    const float x = edit.has_preferred_x != 0 ? edit.preferred_x
                                              : text_width(font, text.substr(start, from - start));
    // Beyond the first and the last line there is only the text's own end.
    std::size_t target = up ? 0 : text.size();
    if (to != start)
        target = byte_at_x(text, to, x, font);
    move_cursor(context, edit, target);
    edit.has_preferred_x = 1;
    edit.preferred_x = x;
}

void move_in_line(nk_context *context, nk_text_edit &edit)
{
    const bool to_start = take_key(context, NK_KEY_TEXT_LINE_START);
    const bool to_end = take_key(context, NK_KEY_TEXT_LINE_END);
    if (to_start == to_end)
        return;
    const std::string_view text = edited_text(edit);
    const std::size_t from = origin(context, edit, to_end);
    move_cursor(context, edit, to_start ? line_start(text, from) : line_end(text, from));
}

void move_by_word(nk_context *context, nk_text_edit &edit)
{
    const bool left = take_key(context, NK_KEY_TEXT_WORD_LEFT);
    const bool right = take_key(context, NK_KEY_TEXT_WORD_RIGHT);
    if (left == right)
        return;
    const std::size_t from = origin(context, edit, right);
    const bool leaves_selection = edit.select_start != edit.select_end && !is_selecting(context);
    move_cursor(context, edit,
                leaves_selection ? from : word_boundary(edited_text(edit), from, right));
}

void move_by_character(nk_context *context, nk_text_edit &edit)
{
    const bool left = take_key(context, NK_KEY_LEFT);
    const bool right = take_key(context, NK_KEY_RIGHT);
    if (left == right)
        return;
    const std::string_view text = edited_text(edit);
    const bool leaves_selection = edit.select_start != edit.select_end && !is_selecting(context);
    move_cursor(context, edit,
                leaves_selection ? origin(context, edit, right)
                                 : character_offset(text, edit.cursor + (right ? 1 : -1)));
}

void move_to_end(nk_context *context, nk_text_edit &edit)
{
    const bool to_start = take_key(context, NK_KEY_TEXT_START);
    const bool to_end = take_key(context, NK_KEY_TEXT_END);
    if (to_start != to_end)
        move_cursor(context, edit, to_start ? 0 : edited_text(edit).size());
}

} // namespace

std::string_view edited_text(const nk_text_edit &edit)
{
    const nk_buffer &buffer = edit.string.buffer;
    return {static_cast<const char *>(buffer.memory.ptr), buffer.allocated};
}

void move_by_keys(nk_context *context, nk_text_edit &edit, int rows)
{
    move_by_character(context, edit);
    move_to_end(context, edit);
    move_by_page(context, edit, rows);
    move_by_row(context, edit);
    move_in_line(context, edit);
    move_by_word(context, edit);
    if (take_key(context, NK_KEY_TEXT_SELECT_ALL))
        nk_textedit_select_all(&edit);
}

} // namespace vimbo
