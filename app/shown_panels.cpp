#include "app/shown_panels.hpp"

#include "ui/draw_commands.hpp"
#include "ui/nuklear_backend.hpp"

#include <cmath>
#include <cstring>

namespace vimbo
{

namespace
{

constexpr int vertex_buffer_size = 16777216;
constexpr int element_buffer_size = 4194304;

void draw_panels(nk_context *context)
{
    glClearColor(0.7F, 0.7F, 0.7F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    nk_glfw3_render(NK_ANTI_ALIASING_ON, vertex_buffer_size, element_buffer_size);
    // The backend leaves each frame's draw commands where it has put them, and the
    // next frame's behind them: kilobytes with every frame, all day long.
    nk_buffer_clear(context->draw_list.buffer);
}

// Keeps what the window shows, upside down, as the window lies in memory: so it is
// copied both ways without any drawing.
void copy_from_window(offscreen &copy)
{
    copy.upside_down = true;
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, copy.framebuffer);
    glBlitFramebuffer(0, 0, copy.width, copy.height, 0, copy.height, copy.width, 0,
                      GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
}

void copy_part(const offscreen &copy, const pixel_edges &part)
{
    copy_to_window(copy, part, part, GL_NEAREST);
}

// The popup's own bounds are as high as it may become; the frame around it is
// as high as it is. Half of the frame's line lies outside of it.
struct nk_rect popup_of(nk_context *context)
{
    struct nk_rect found = {};
    const nk_window *window = context->begin;
    if (window == nullptr || window->popup.win == nullptr)
        return found;
    const struct nk_rect &most = window->popup.win->bounds;
    const nk_command *command = nullptr;
    nk_foreach(command, context)
    {
        const auto *frame = reinterpret_cast<const nk_command_rect *>(command);
        if (command->type == NK_COMMAND_RECT && frame->x == static_cast<int>(most.x) &&
            frame->y == static_cast<int>(most.y) && frame->w == static_cast<unsigned int>(most.w))
            found = nk_recti(frame->x - 1, frame->y - 1, static_cast<int>(frame->w) + 2,
                             static_cast<int>(frame->h) + 2);
    }
    return found;
}

// True when this layout draws what the copy shows; if not, it is noted.
bool is_as_shown(const frame_state &frame, shown_panels &panels)
{
    const nk_buffer &memory = complete_draw_commands(frame.context);
    if (memory.allocated > sizeof panels.commands) {
        forget_panels(panels);
        return false;
    }
    const bool same = panels.copied &&
                      panels.copy.width == in_pixels(frame.window_width, frame.ratio.x) &&
                      panels.copy.height == in_pixels(frame.window_height, frame.ratio.y) &&
                      panels.command_bytes == memory.allocated &&
                      std::memcmp(panels.commands, memory.memory.ptr, memory.allocated) == 0;
    panels.copied = same;
    panels.command_bytes = memory.allocated;
    std::memcpy(panels.commands, memory.memory.ptr, memory.allocated);
    return same;
}

} // namespace

void forget_panels(shown_panels &panels)
{
    panels.command_bytes = 0;
    panels.copied = false;
}

void render_panels(const frame_state &frame, shown_panels &panels)
{
    const GLsizei width = in_pixels(frame.window_width, frame.ratio.x);
    const GLsizei height = in_pixels(frame.window_height, frame.ratio.y);
    const bool first = panels.command_bytes == 0;
    panels.popup = in_pixels(popup_of(frame.context), frame.ratio);
    if (is_as_shown(frame, panels)) {
        nk_clear(frame.context);
        copy_part(panels.copy, {0, 0, width, height});
        return;
    }
    draw_panels(frame.context);
    // The program's first frame is waited for; the second will be copied.
    if (first || panels.command_bytes == 0 || !fit_offscreen(panels.copy, width, height))
        return;
    // Copied from the window rather than drawn once more, so that both are alike.
    copy_from_window(panels.copy);
    panels.copied = true;
}

void render_popup_again(const shown_panels &panels)
{
    if (!panels.copied || panels.popup.w == 0)
        return;
    // Whole pixels, those that the popup takes a part of as well.
    const struct nk_rect &popup = panels.popup;
    copy_part(panels.copy, {static_cast<GLint>(popup.x),
                            panels.copy.height - static_cast<GLint>(std::ceil(popup.y + popup.h)),
                            static_cast<GLint>(std::ceil(popup.x + popup.w)),
                            panels.copy.height - static_cast<GLint>(popup.y)});
}

} // namespace vimbo
