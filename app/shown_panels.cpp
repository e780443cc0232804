#include "app/shown_panels.hpp"

#include "app/panel_damage.hpp"
#include "ui/commands_in_pixels.hpp"
#include "ui/nuklear_backend.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>

namespace vimbo
{

namespace
{

void clear_window()
{
    glClearColor(0.7F, 0.7F, 0.7F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
}

void copy_part(const offscreen &copy, const pixel_edges &part)
{
    copy_to_window(copy, part, part, GL_NEAREST);
}

// In pixels.
pixel_edges whole_window(const frame_state &frame)
{
    return {0, 0, in_pixels(frame.window_width, frame.ratio.x),
            in_pixels(frame.window_height, frame.ratio.y)};
}

// In pixels, those that the rectangle takes a part of as well, and from the bottom up.
pixel_edges edges_of(const window_rect &rect, const frame_state &frame)
{
    const pixel_edges window = whole_window(frame);
    const struct nk_rect pixels = in_pixels(
        nk_recti(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top), frame.ratio);
    return {static_cast<GLint>(pixels.x),
            std::max(window.top - static_cast<GLint>(std::ceil(pixels.y + pixels.h)), 0),
            std::min(static_cast<GLint>(std::ceil(pixels.x + pixels.w)), window.right),
            window.top - static_cast<GLint>(pixels.y)};
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

bool copy_fits(const frame_state &frame, const shown_panels &panels)
{
    const pixel_edges window = whole_window(frame);
    return panels.copied && panels.copy.width == window.right && panels.copy.height == window.top;
}

bool are_as_kept(const draw_commands &commands, const kept_commands &kept)
{
    return kept.size == commands.memory.size() && kept.first == commands.first &&
           std::memcmp(kept.memory, commands.memory.data(), kept.size) == 0;
}

// What these commands draw elsewise than the kept ones; the whole window where that
// is not known.
window_rect damage_of(const frame_state &frame, shown_panels &panels, const draw_commands &commands,
                      bool listed)
{
    const window_rect window = {0, 0, frame.window_width, frame.window_height};
    if (!copy_fits(frame, panels) || !listed || !panels.last.listed)
        return window;
    const draw_commands before = {std::span(panels.last.memory).first(panels.last.size),
                                  panels.last.first};
    return intersection(find_damage({before, panels.last.list}, {commands, panels.now}), window);
}

// False when there are too many of them; what they draw must not be copied then.
bool keep_commands(kept_commands &kept, const draw_commands &commands, const command_list &list,
                   bool listed)
{
    kept.size = 0;
    kept.listed = false;
    if (commands.memory.size() > sizeof kept.memory)
        return false;
    kept.size = commands.memory.size();
    kept.first = commands.first;
    std::memcpy(kept.memory, commands.memory.data(), kept.size);
    kept.listed = listed;
    kept.list.count = list.count;
    std::copy_n(list.commands, list.count, kept.list.commands);
    return true;
}

void draw_all(const frame_state &frame, shown_panels &panels, const draw_commands &commands,
              bool copy_wanted)
{
    clear_window();
    put_on_pixels(commands, frame.ratio);
    render_backend();
    panels.copied = false;
    const pixel_edges window = whole_window(frame);
    if (!copy_wanted || !fit_offscreen(panels.copy, window.right, window.top))
        return;
    // Copied from the window rather than drawn once more, so that both are alike.
    copy_from_window(panels.copy, window, window);
    panels.copied = true;
}

void draw_damage(const frame_state &frame, shown_panels &panels, const draw_commands &commands,
                 const window_rect &damage)
{
    copy_part(panels.copy, whole_window(frame));
    const pixel_edges part = edges_of(damage, frame);
    glEnable(GL_SCISSOR_TEST);
    glScissor(part.left, part.bottom, part.right - part.left, part.top - part.bottom);
    clear_window();
    drop_commands_beside(commands, panels.now, damage);
    put_on_pixels(commands, frame.ratio);
    render_backend_within(part.left, part.bottom, part.right, part.top);
    copy_from_window(panels.copy, part, part);
}

// Beyond half of the window the copies cost more than they spare.
bool is_most_of(const frame_state &frame, const window_rect &rect)
{
    const std::int64_t width = rect.right - rect.left;
    const std::int64_t height = rect.bottom - rect.top;
    return 2 * width * height > std::int64_t{frame.window_width} * frame.window_height;
}

} // namespace

void forget_panels(shown_panels &panels)
{
    panels.last.size = 0;
    panels.copied = false;
}

void render_panels(const frame_state &frame, shown_panels &panels)
{
    const bool first = panels.last.size == 0;
    panels.popup = in_pixels(popup_of(frame.context), frame.ratio);
    const draw_commands commands = complete_draw_commands(frame.context);
    if (copy_fits(frame, panels) && are_as_kept(commands, panels.last)) {
        nk_clear(frame.context);
        copy_part(panels.copy, whole_window(frame));
        return;
    }
    const bool listed = list_commands(panels.now, commands);
    const window_rect damage = damage_of(frame, panels, commands, listed);
    const bool kept = keep_commands(panels.last, commands, panels.now, listed);
    if (!is_most_of(frame, damage))
        draw_damage(frame, panels, commands, damage);
    else
        draw_all(frame, panels, commands,
                 kept && !first); // the program's first frame is waited for
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
