#include "render/preview_panel.hpp"

#include "ui/flags.hpp"
#include "ui/takes_input.hpp"

#include <cmath>

namespace vimbo
{

namespace
{

constexpr float picture_height = 500;
constexpr float progress_height = 24;

// About the panel's centre, by two for each notch.
void zoom_with_wheel(preview_state &preview, float notches)
{
    if (notches == 0.0F)
        return;
    const double factor = std::exp2(static_cast<double>(notches));
    preview.pan_x = static_cast<float>(preview.pan_x * factor);
    preview.pan_y = static_cast<float>(preview.pan_y * factor);
    preview.zoom = static_cast<float>(preview.zoom * factor);
}

void pan_with_drag(const frame_state &frame, preview_state &preview, struct nk_vec2 delta)
{
    constexpr float pan_speed = 4;
    preview.pan_x += delta.x / static_cast<float>(frame.window_width) * pan_speed;
    preview.pan_y -= delta.y / static_cast<float>(frame.window_height) * pan_speed;
}

void reset_view(preview_state &preview)
{
    preview.pan_x = 0;
    preview.pan_y = 0;
    preview.zoom = 1.0F;
}

void follow_mouse(const frame_state &frame, preview_state &preview)
{
    const nk_input &input = frame.context->input;
    zoom_with_wheel(preview, input.mouse.scroll_delta.y);
    if (nk_input_is_mouse_hovering_rect(&input, preview.rectangle) == 0)
        return;
    if (nk_input_is_mouse_down(&input, NK_BUTTON_LEFT) != 0)
        pan_with_drag(frame, preview, input.mouse.delta);
    if (nk_input_is_mouse_pressed(&input, NK_BUTTON_MIDDLE) != 0)
        reset_view(preview);
    if (nk_input_is_mouse_pressed(&input, NK_BUTTON_RIGHT) != 0)
        preview.replay_position = 0;
}

void replay_bar(const frame_state &frame, preview_state &preview)
{
    if (preview.replay_position < replay_end && !frame.input_only)
        ++preview.replay_position;
    nk_layout_row_dynamic(frame.context, progress_height, 1);
    preview.replay_position = nk_prog(frame.context, preview.replay_position, replay_end, nk_true);
}

} // namespace

void preview_panel(frame_state &frame, preview_state &preview)
{
    nk_context *context = frame.context;
    if (nk_group_begin(context, "Preview",
                       NK_WINDOW_BORDER | NK_WINDOW_NO_SCROLLBAR | NK_WINDOW_TITLE) == 0)
        return;
    nk_layout_row_dynamic(context, picture_height, 1);
    nk_widget(&preview.rectangle, context);
    frame.frame_flags |= frame_flag::preview_laid_out;
    if (nk_window_is_hovered(context) != 0) {
        if (takes_input(context))
            follow_mouse(frame, preview);
        replay_bar(frame, preview);
    }
    nk_group_end(context);
}

} // namespace vimbo
