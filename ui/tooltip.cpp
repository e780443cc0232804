#include "ui/tooltip.hpp"

#include "ui/nuklear.hpp"

#include <algorithm>
#include <cstring>

namespace vimbo
{

namespace
{

// As nk_tooltip makes it, its frame included.
struct nk_vec2 tooltip_size(const nk_context *context, const char *text)
{
    const nk_style &style = context->style;
    const nk_user_font &font = *style.font;
    const struct nk_vec2 padding = style.window.padding;
    const float width =
        font.width(font.userdata, font.height, text, static_cast<int>(std::strlen(text)));
    const float frame = style.window.popup_border + 1;
    return nk_vec2(width + 4 * padding.x + frame, font.height + 2 * padding.y +
                                                      2 * style.window.popup_padding.y +
                                                      style.window.spacing.y + frame);
}

} // namespace

void tooltip_in_window(frame_state &frame, const char *text)
{
    struct nk_vec2 &pointer = frame.context->input.mouse.pos;
    const struct nk_vec2 position = pointer;
    const struct nk_vec2 size = tooltip_size(frame.context, text);
    const auto right = static_cast<float>(frame.window_width) - 1;
    const auto bottom = static_cast<float>(frame.window_height) - 1;
    pointer.x = std::max(0.0F, std::min(position.x, right - size.x));
    if (position.y + size.y > bottom)
        pointer.y = std::max(0.0F, position.y - size.y);
    nk_tooltip(frame.context, text);
    pointer = position;
}

} // namespace vimbo
