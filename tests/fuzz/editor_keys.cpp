// The editor's movements over any bytes, be they text or not: the cursor stays within
// the text, at a whole character, and no byte of the text changes.
#include "sources/editor_keys.hpp"
#include "sources/text_places.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

namespace
{

using namespace vimbo;

constexpr std::size_t most_keys = 64;

void require(bool held)
{
    if (!held)
        std::abort();
}

float width_of(nk_handle /*user*/, float /*height*/, const char *text, int length)
{
    return 8.0F * static_cast<float>(character_count({text, static_cast<std::size_t>(length)}));
}

void check_cursor(const nk_text_edit &edit, std::string_view text)
{
    require(edited_text(edit) == text);
    const int characters = character_count(text);
    for (const int at : {edit.cursor, edit.select_start, edit.select_end})
        require(at >= 0 && at <= characters);
}

void check_places(std::string_view text)
{
    for (std::size_t at = 0; at <= text.size(); at += 1 + text.size() / 50) {
        const std::size_t start = line_start(text, at);
        const std::size_t end = line_end(text, at);
        require(start <= at && start <= end && end <= text.size());
        // Between a carriage return and its line feed, the line's end is behind.
        require(at <= end || (at == end + 1 && text[end] == '\r'));
        require(start == 0 || text[start - 1] == '\n');
        require(end == text.size() || text[end] == '\n' || text[end] == '\r');
        require(text.substr(start, end - start).find('\n') == std::string_view::npos);
        require(line_start(text, at, -1) <= start && line_start(text, at, 1) >= start);
        require(word_boundary(text, at, true) >= at &&
                word_boundary(text, at, true) <= text.size());
        require(word_boundary(text, at, false) <= at);
    }
}

} // namespace

// The first bytes are keys, the rest is the text.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    static constexpr nk_keys keys[] = {NK_KEY_UP,
                                       NK_KEY_DOWN,
                                       NK_KEY_SCROLL_UP,
                                       NK_KEY_SCROLL_DOWN,
                                       NK_KEY_TEXT_LINE_START,
                                       NK_KEY_TEXT_LINE_END,
                                       NK_KEY_TEXT_WORD_LEFT,
                                       NK_KEY_TEXT_WORD_RIGHT};
    const std::size_t pressed = std::min(size / 2, most_keys);
    const std::string text(reinterpret_cast<const char *>(data) + pressed, size - pressed);
    check_places(text);

    std::string memory = text + '\0';
    nk_user_font font = {};
    font.height = 16;
    font.width = width_of;
    static nk_context context;
    context.style.font = &font;
    nk_text_edit edit = {};
    nk_textedit_init_fixed(&edit, memory.data(), memory.size());
    edit.string.buffer.allocated = text.size();
    edit.string.len = character_count(text);
    for (std::size_t i = 0; i < pressed; ++i) {
        const nk_keys key = keys[data[i] % std::size(keys)];
        context.input.keyboard.keys[NK_KEY_SHIFT].down = (data[i] & 0x80) != 0 ? nk_true : nk_false;
        context.input.keyboard.keys[key].down = nk_true;
        context.input.keyboard.keys[key].clicked = 1;
        move_by_keys(&context, edit, data[i] % 40);
        context.input.keyboard.keys[key].down = nk_false;
        check_cursor(edit, text);
    }
    return 0;
}
