#include "ui/clipboard.hpp"

#include "platform/desktop_clipboard.hpp"
#include "ui/nuklear_backend.hpp"

#include <algorithm>
#include <climits>
#include <cstring>

namespace vimbo
{

namespace
{

constexpr std::size_t clipboard_capacity = 65536 + 1;

// What was copied last, until another program's text is read.
char clipboard_text[clipboard_capacity];

// Bytes that `characters` characters of the text take, at most `available`.
int bytes_of(const char *text, int characters, int available)
{
    int bytes = 0;
    for (int i = 0; i < characters && bytes < available; ++i) {
        nk_rune character = 0;
        const int length = nk_utf_decode(text + bytes, &character, available - bytes);
        // A character that is cut off at the end of the text.
        if (length == 0)
            break;
        bytes += length;
    }
    return bytes;
}

void copy_to_clipboard(nk_handle window, const char *text, int characters)
{
    if (text == nullptr || characters <= 0)
        return;
    const auto most = static_cast<int>(sizeof clipboard_text) - 1;
    const auto available = static_cast<int>(strnlen(text, static_cast<std::size_t>(most)));
    const auto length = static_cast<std::size_t>(bytes_of(text, characters, available));
    std::memcpy(clipboard_text, text, length);
    clipboard_text[length] = '\0';
    write_clipboard(static_cast<GLFWwindow *>(window.ptr), clipboard_text);
}

void paste_from_clipboard(nk_handle window, nk_text_edit *edit)
{
    if (read_clipboard(static_cast<GLFWwindow *>(window.ptr), clipboard_text) !=
        clipboard_answer::nothing)
        paste_text(*edit, clipboard_text);
}

} // namespace

void use_clipboard(GLFWwindow *window, nk_context *context)
{
    context->clip.userdata = nk_handle_ptr(window);
    context->clip.copy = copy_to_clipboard;
    context->clip.paste = paste_from_clipboard;
}

void paste_text(nk_text_edit &edit, const char *text)
{
    if (edit.mode == NK_TEXT_EDIT_MODE_VIEW)
        return;
    if (edit.select_start != edit.select_end)
        nk_textedit_delete_selection(&edit);
    edit.cursor = std::clamp(edit.cursor, 0, edit.string.len);

    // An insertion leaves the last byte free; one into a full text does nothing.
    const nk_buffer &buffer = edit.string.buffer;
    if (buffer.allocated + 1 >= buffer.memory.size)
        return;
    const std::size_t room = buffer.memory.size - buffer.allocated - 1;
    const auto available = static_cast<int>(strnlen(text, room));
    const int bytes = bytes_of(text, INT_MAX, available);
    if (bytes == 0)
        return;
    const int before = edit.string.len;
    if (nk_str_insert_at_rune(&edit.string, edit.cursor, text, bytes) == 0)
        return;
    edit.cursor += edit.string.len - before;
    edit.has_preferred_x = 0;
    // The toolkit's own undo knows nothing of this insertion, so what it noted
    // before no longer fits the text.
    edit.undo.undo_point = 0;
    edit.undo.undo_char_point = 0;
}

} // namespace vimbo
