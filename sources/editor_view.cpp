#include "sources/editor_view.hpp"

#include "sources/editor_keys.hpp"
#include "sources/text_places.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <cmath>

namespace vimbo
{

namespace
{

float longest_line(std::string_view text, const nk_user_font &font)
{
    float longest = 0;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        longest = std::max(longest, text_width(font, text.substr(start, end - start)));
        start = end + 1;
    }
    return longest;
}

float text_height(const nk_text_edit &edit, const editor_view &view)
{
    const auto lines = std::ranges::count(edited_text(edit), '\n') + 1;
    return static_cast<float>(lines) * view.row_height;
}

} // namespace

editor_view view_of(const nk_context *context, const struct nk_rect &bounds)
{
    const nk_style_edit &style = context->style.edit;
    const float row_height = context->style.font->height + style.row_padding;
    const float left = style.padding.x + style.border;
    const float top = style.padding.y + style.border;
    const struct nk_rect area = nk_rect(
        bounds.x + left, bounds.y + top,
        bounds.w - 2 * left - style.scrollbar_size.x - style.cursor_size, bounds.h - 2 * top);
    const float scrollbar_left = bounds.x + bounds.w - style.border - style.scrollbar_size.x;
    const int rows = std::max(1, static_cast<int>(area.h / row_height));
    return {bounds, area, scrollbar_left, row_height, rows};
}

bool is_scrollable(const nk_text_edit &edit, const editor_view &view)
{
    return text_height(edit, view) > view.area.h;
}

bool scroll_by(nk_text_edit &edit, const editor_view &view, const nk_user_font &font,
               struct nk_vec2 pixels)
{
    const struct nk_vec2 before = edit.scrollbar;
    const std::string_view text = edited_text(edit);
    if (pixels.y != 0) {
        const float most = std::max(0.0F, text_height(edit, view) - view.area.h);
        edit.scrollbar.y = std::clamp(before.y + pixels.y, 0.0F, most);
    }
    if (pixels.x != 0) {
        const float most = std::max(0.0F, std::ceil(longest_line(text, font) - view.area.w) + 1);
        edit.scrollbar.x = std::clamp(before.x + pixels.x, 0.0F, most);
    }
    return edit.scrollbar.x != before.x || edit.scrollbar.y != before.y;
}

void show_cursor(nk_text_edit &edit, const editor_view &view, const nk_user_font &font)
{
    const std::string_view text = edited_text(edit);
    const std::string_view above = text.substr(0, character_offset(text, edit.cursor));
    const auto row = static_cast<float>(std::ranges::count(above, '\n'));
    const float last = row - static_cast<float>(view.rows) + 1;
    edit.scrollbar.y =
        std::clamp(edit.scrollbar.y, std::max(0.0F, last * view.row_height), row * view.row_height);

    const float x = text_width(font, above.substr(line_start(text, above.size())));
    const float ahead = view.area.w / 4;
    if (x < edit.scrollbar.x)
        edit.scrollbar.x = std::max(0.0F, std::floor(x - ahead));
    if (x >= edit.scrollbar.x + view.area.w)
        edit.scrollbar.x = std::max(0.0F, std::floor(x + ahead - view.area.w));
}

std::size_t byte_at_point(const nk_text_edit &edit, const editor_view &view,
                          const nk_user_font &font, struct nk_vec2 point, bool between)
{
    const std::string_view text = edited_text(edit);
    const float y = std::max(0.0F, point.y - view.area.y + edit.scrollbar.y);
    const float x = std::max(0.0F, point.x - view.area.x + edit.scrollbar.x);
    const std::size_t start = line_start(text, 0, static_cast<int>(y / view.row_height));
    const std::size_t at = byte_at_x(text, start, x, font);
    if (!between || at == line_end(text, start))
        return at;
    const std::size_t bytes = std::max(character_bytes(text.substr(at)), std::size_t{1});
    const float left = text_width(font, text.substr(start, at - start));
    const float width = text_width(font, text.substr(at, bytes));
    return x < left + width / 2 ? at : at + bytes;
}

} // namespace vimbo
