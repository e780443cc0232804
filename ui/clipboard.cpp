#include "ui/clipboard.hpp"

#include "platform/desktop_clipboard.hpp"
#include "ui/nuklear_backend.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <climits>
#include <cstring>

namespace vimbo
{

namespace
{

void copy_to_clipboard(nk_handle user, const char *text, int characters)
{
    auto &clipboard = *static_cast<clipboard_state *>(user.ptr);
    if (!take_copy(clipboard, text, characters))
        return;
    write_clipboard(clipboard.window, clipboard.text);
}

void paste_from_clipboard(nk_handle user, nk_text_edit *edit)
{
    auto &clipboard = *static_cast<clipboard_state *>(user.ptr);
    if (read_clipboard(clipboard.window, clipboard.text) != clipboard_answer::nothing)
        paste_text(*edit, clipboard.text);
}

} // namespace

void serve_clipboard(GLFWwindow *window, nk_context *context, clipboard_state &clipboard)
{
    clipboard.window = window;
    context->clip.userdata = nk_handle_ptr(&clipboard);
    context->clip.copy = copy_to_clipboard;
    context->clip.paste = paste_from_clipboard;
}

bool take_copy(clipboard_state &clipboard, const char *text, int characters)
{
    if (text == nullptr || characters <= 0)
        return false;
    const std::string_view available(text, strnlen(text, clipboard_capacity - 1));
    const std::size_t length = character_offset(available, characters);
    std::memcpy(clipboard.text, text, length);
    clipboard.text[length] = '\0';
    return true;
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
    const auto bytes = static_cast<int>(character_offset({text, strnlen(text, room)}, INT_MAX));
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
