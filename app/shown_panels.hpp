// The panels as the last frame showed them. Drawing them takes a software
// renderer most of a frame's time, and between two frames they seldom change.
#pragma once

#include "render/offscreen.hpp"
#include "ui/frame_state.hpp"
#include "ui/nuklear.hpp"

#include <cstddef>

namespace vimbo
{

/// More than the fullest window's drawing commands; when there are more, every
/// frame draws them.
inline constexpr std::size_t shown_commands_capacity = std::size_t{1} << 20;

/// All zero: nothing kept. Main thread only.
struct shown_panels {
    char commands[shown_commands_capacity]; // of the last layout
    std::size_t command_bytes;
    offscreen copy;
    bool copied; // the copy shows what these commands draw
    /// Where an open list or a tooltip lies in the window, in pixels, origin top left.
    struct nk_rect popup;
};

/// Forgets the copy: what the window held may be lost.
void forget_panels(shown_panels &panels);

/// Ends the layout: has Nuklear draw the panels into the window, or where they
/// are as they were, puts their copy there.
void render_panels(const frame_state &frame, shown_panels &panels);

/// Puts an open list or a tooltip once more over what was drawn since.
void render_popup_again(const shown_panels &panels);

} // namespace vimbo
