// The panels as the last frame showed them. Drawing them takes a software
// renderer most of a frame's time, and between two frames they seldom change, or
// little of them does: only that is drawn, onto a copy of the rest.
//
//     this layout's commands -- as the last one's? --> the copy goes into the window
//              |
//          differ in a part: the copy goes into the window, the part is drawn over
//              |             it, clipped, and copied back
//              v
//          differ in most, or no copy: all is drawn, and copied
#pragma once

#include "render/offscreen.hpp"
#include "ui/draw_commands.hpp"
#include "ui/frame_state.hpp"
#include "ui/nuklear.hpp"

#include <cstddef>

namespace vimbo
{

/// More than the fullest window's drawing commands; when there are more, every
/// frame draws them.
inline constexpr std::size_t shown_commands_capacity = std::size_t{1} << 20;

/// A layout's commands, kept.
struct kept_commands {
    alignas(std::max_align_t) char memory[shown_commands_capacity];
    std::size_t size;
    std::size_t first; // offset of the first command
    command_list list;
    bool listed; // the list holds them all
};

/// All zero: nothing kept. Main thread only.
struct shown_panels {
    kept_commands last; // of the last layout
    command_list now;   // of the one that is being shown
    offscreen copy;
    bool copied; // the copy shows what the last layout's commands draw
    /// Where an open list or a tooltip lies in the window, in pixels, origin top left.
    struct nk_rect popup;
};

/// Forgets the copy: what the window held may be lost.
void forget_panels(shown_panels &panels);

/// Ends the layout: has Nuklear draw the panels into the window, as far as they are
/// not as they were, and the rest from their copy.
void render_panels(const frame_state &frame, shown_panels &panels);

/// Puts an open list or a tooltip once more over what was drawn since.
void render_popup_again(const shown_panels &panels);

} // namespace vimbo
