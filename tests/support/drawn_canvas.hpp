// One frame of a Nuklear context without a window, drawn as a test says.
#pragma once

#include "ui/nuklear.hpp"

#include <functional>

namespace rig
{

/// Starts the context with a made-up font and lays the frame out; the test frees the
/// context.
inline void draw_on_canvas(nk_context &context, nk_user_font &font,
                           const std::function<void(nk_command_buffer *)> &draw)
{
    font.height = 16;
    font.width = [](nk_handle /*font*/, float /*height*/, const char * /*text*/, int length) {
        return static_cast<float>(8 * length);
    };
    nk_init_default(&context, &font);
    context.style.window.fixed_background = nk_style_item_hide();
    if (nk_begin(&context, "frame", nk_rect(0, 0, 1000, 1000), NK_WINDOW_NO_SCROLLBAR) != 0)
        draw(nk_window_get_canvas(&context));
    nk_end(&context);
}

} // namespace rig
