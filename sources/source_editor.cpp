#include "sources/source_editor.hpp"

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

int characters_in(std::string_view text)
{
    return nk_utf_len(text.data(), static_cast<int>(text.size()));
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
    edit.string.len = characters_in(text_of(editor));
    edit.cursor = characters_in(text_of(editor).substr(0, inserted_end));
    edit.select_start = edit.cursor;
    edit.select_end = edit.cursor;
    edit.has_preferred_x = 0;
    note_text(editor);
}

// True when the key was pressed, which the toolkit then does not see.
bool take_key(nk_context *context, nk_keys key)
{
    const bool pressed = nk_input_is_key_pressed(&context->input, key) != 0;
    context->input.keyboard.keys[key].clicked = 0;
    return pressed;
}

void undo_and_redo(nk_context *context, source_editor_state &editor)
{
    text_change change = {};
    if (take_key(context, NK_KEY_TEXT_UNDO) && take_undo(editor.history, change))
        apply_change(editor, change);
    if (take_key(context, NK_KEY_TEXT_REDO) && take_redo(editor.history, change))
        apply_change(editor, change);
}

// The toolkit clears cursor, selection and place when a click activates an edit;
// one that is given the focus before it sees the click keeps them.
void focus_when_clicked(nk_context *context, const struct nk_rect &bounds)
{
    const bool read_only = (context->current->layout->flags & NK_WINDOW_ROM) != 0;
    if (!read_only && nk_input_is_mouse_pressed(&context->input, NK_BUTTON_LEFT) != 0 &&
        nk_input_is_mouse_hovering_rect(&context->input, bounds) != 0)
        nk_edit_focus(context, NK_EDIT_ALWAYS_INSERT_MODE);
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

// Byte at which character number `index` of the text begins.
std::size_t byte_at(std::string_view text, int index)
{
    std::size_t at = 0;
    nk_rune character = 0;
    for (; index > 0; --index) {
        const int length =
            nk_utf_decode(text.data() + at, &character, static_cast<int>(text.size() - at));
        if (length == 0)
            break;
        at += static_cast<std::size_t>(length);
    }
    return at;
}

// Start of the line that is `lines` below, or above, that of the byte at `from`,
// as far as there are lines.
std::size_t line_start(std::string_view text, std::size_t from, int lines)
{
    std::size_t start = from == 0 ? 0 : text.rfind('\n', from - 1) + 1;
    for (; lines < 0 && start > 0; ++lines)
        start = start == 1 ? 0 : text.rfind('\n', start - 2) + 1;
    for (; lines > 0; --lines) {
        const std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            break;
        start = end + 1;
    }
    return start;
}

// Byte behind the last character of the line that the byte at `from` is in.
std::size_t line_end(std::string_view text, std::size_t from)
{
    return std::min(text.find('\n', from), text.size());
}

float width_of(const nk_user_font &font, std::string_view text)
{
    return font.width(font.userdata, font.height, text.data(), static_cast<int>(text.size()));
}

bool is_selecting(const nk_context *context)
{
    return context->input.keyboard.keys[NK_KEY_SHIFT].down != 0;
}

// Byte where a movement begins: a selection that is given up is left at the end
// that the movement goes toward.
std::size_t origin(const nk_context *context, const nk_text_edit &edit, std::string_view text,
                   bool forward)
{
    if (is_selecting(context) || edit.select_start == edit.select_end)
        return byte_at(text, edit.cursor);
    return byte_at(text, forward ? std::max(edit.select_start, edit.select_end)
                                 : std::min(edit.select_start, edit.select_end));
}

void move_cursor(const nk_context *context, nk_text_edit &edit, std::string_view text,
                 std::size_t to)
{
    if (edit.select_start == edit.select_end)
        edit.select_start = edit.cursor;
    edit.cursor = characters_in(text.substr(0, to));
    edit.select_end = edit.cursor;
    if (!is_selecting(context))
        edit.select_start = edit.cursor;
    edit.has_preferred_x = 0;
}

void move_by_page(nk_context *context, nk_text_edit &edit, std::string_view text, int rows)
{
    const bool up = take_key(context, NK_KEY_SCROLL_UP);
    const bool down = take_key(context, NK_KEY_SCROLL_DOWN);
    if (up != down)
        move_cursor(context, edit, text,
                    line_start(text, byte_at(text, edit.cursor), up ? -rows : rows));
}

// Byte of the character in the line that begins at `start` that is the last one
// to begin no further right than x.
std::size_t byte_at_x(std::string_view text, std::size_t start, float x, const nk_user_font &font)
{
    const std::size_t end = line_end(text, start);
    std::size_t at = start;
    float right = 0;
    while (at < end) {
        nk_rune character = 0;
        const int length = nk_utf_decode(text.data() + at, &character, static_cast<int>(end - at));
        const auto bytes = static_cast<std::size_t>(std::max(length, 1));
        right += width_of(font, text.substr(at, bytes));
        if (right > x)
            break;
        at += bytes;
    }
    return at;
}

// For this and the movements below the toolkit counts from the text's beginning for
// every character of a line, which takes a tenth of a second at the end of a long
// text, and seconds in a long line.
void move_by_row(nk_context *context, nk_text_edit &edit, std::string_view text,
                 const nk_user_font &font)
{
    const bool up = take_key(context, NK_KEY_UP);
    const bool down = take_key(context, NK_KEY_DOWN);
    if (up == down)
        return;
    const std::size_t from = origin(context, edit, text, down);
    const std::size_t start = line_start(text, from, 0);
    const std::size_t to = line_start(text, from, up ? -1 : 1);
    const float x = edit.has_preferred_x != 0 ? edit.preferred_x
                                              : width_of(font, text.substr(start, from - start));
    // Beyond the first and the last line there is only the text's own end.
    std::size_t target = up ? 0 : text.size();
    if (to != start)
        target = byte_at_x(text, to, x, font);
    move_cursor(context, edit, text, target);
    edit.has_preferred_x = 1;
    edit.preferred_x = x;
}

void move_in_line(nk_context *context, nk_text_edit &edit, std::string_view text)
{
    const bool to_start = take_key(context, NK_KEY_TEXT_LINE_START);
    const bool to_end = take_key(context, NK_KEY_TEXT_LINE_END);
    if (to_start == to_end)
        return;
    const std::size_t from = origin(context, edit, text, to_end);
    move_cursor(context, edit, text, to_start ? line_start(text, from, 0) : line_end(text, from));
}

bool is_continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool is_word_boundary(std::string_view text, std::size_t at)
{
    constexpr std::string_view boundaries = " \t,;(){}[]|";
    return boundaries.find(text[at]) != std::string_view::npos ||
           text.substr(at).starts_with("\u3000");
}

// To the blank or bracket before, or behind, as the toolkit goes.
std::size_t word_boundary(std::string_view text, std::size_t from, bool forward)
{
    const auto step = [&](std::size_t at) {
        do
            at += forward ? 1 : std::size_t(-1);
        while (at > 0 && at < text.size() && is_continuation(text[at]));
        return at;
    };
    const std::size_t last = forward ? text.size() : 0;
    if (from == last)
        return last;
    std::size_t at = step(from);
    while (at != last && !is_word_boundary(text, at))
        at = step(at);
    return at;
}

void move_by_word(nk_context *context, nk_text_edit &edit, std::string_view text)
{
    const bool left = take_key(context, NK_KEY_TEXT_WORD_LEFT);
    const bool right = take_key(context, NK_KEY_TEXT_WORD_RIGHT);
    if (left == right)
        return;
    const std::size_t from = origin(context, edit, text, right);
    const bool leaves_selection = edit.select_start != edit.select_end && !is_selecting(context);
    move_cursor(context, edit, text, leaves_selection ? from : word_boundary(text, from, right));
}

// The toolkit follows the cursor by one row and a quarter of the width, however
// far it went.
void show_cursor(nk_text_edit &edit, std::string_view text, const text_view &view,
                 const nk_user_font &font)
{
    const std::string_view above = text.substr(0, byte_at(text, edit.cursor));
    const auto row = static_cast<float>(std::ranges::count(above, '\n'));
    const float last = row - static_cast<float>(view.rows) + 1;
    edit.scrollbar.y =
        std::clamp(edit.scrollbar.y, std::max(0.0F, last * view.row_height), row * view.row_height);

    const std::string_view before = above.substr(line_start(text, above.size(), 0));
    const float x = width_of(font, before);
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

void source_editor(frame_state &frame, source_editor_state &editor)
{
    nk_context *context = frame.context;
    nk_text_edit &edit = editor.source_edit;
    const struct nk_rect bounds = nk_widget_bounds(context);
    const text_view view = view_of(context, bounds);
    const int cursor_before = edit.cursor;

    uncover_end(editor);
    focus_when_clicked(context, bounds);
    if (edit.active != 0) {
        undo_and_redo(context, editor);
        move_by_page(context, edit, text_of(editor), view.rows);
        move_by_row(context, edit, text_of(editor), *context->style.font);
        move_in_line(context, edit, text_of(editor));
        move_by_word(context, edit, text_of(editor));
    }
    nk_edit_buffer(context, NK_EDIT_BOX, &edit, nk_filter_default);
    note_edit(editor);
    if (edit.cursor != cursor_before)
        show_cursor(edit, text_of(editor), view, *context->style.font);
    cover_end(editor);
}

} // namespace vimbo
