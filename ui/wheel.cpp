#include "ui/wheel.hpp"

#include "ui/takes_input.hpp"

namespace vimbo
{

struct nk_vec2 wheel_scroll(const nk_context *context, const struct nk_rect &bounds,
                            float row_height)
{
    constexpr float rows_per_notch = 3;
    const nk_input &input = context->input;
    if (!takes_input(context) || nk_input_is_mouse_hovering_rect(&input, bounds) == 0)
        return nk_vec2(0, 0);
    const struct nk_vec2 turned = input.mouse.scroll_delta;
    const float notch = -rows_per_notch * row_height;
    if (input.keyboard.keys[NK_KEY_SHIFT].down != 0)
        return nk_vec2((turned.x + turned.y) * notch, 0);
    return nk_vec2(turned.x * notch, turned.y * notch);
}

} // namespace vimbo
