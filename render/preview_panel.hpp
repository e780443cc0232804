// The Preview panel: where the picture lies, and how the mouse moves its view.
// It only lays out; preview_picture draws.
#pragma once

#include "ui/frame_state.hpp"
#include "ui/nuklear.hpp"

#include <cstddef>

namespace vimbo
{

/// The whole path, in the steps that the replay and its progress bar count in.
inline constexpr std::size_t replay_end = 255;

/// Kept from frame to frame, shown or not. Main thread only.
struct preview_state {
    float zoom = 1.0F;
    float pan_x = 0; // normalised device units, as is pan_y
    float pan_y = 0;
    std::size_t replay_position = replay_end; // 0 to replay_end
    /// Where the picture lies in the window, origin top left. Of this frame
    /// while frame_flag::preview_laid_out is set.
    struct nk_rect rectangle = {};
};

/// The panel, one cell of the row that is being laid out.
void preview_panel(frame_state &frame, preview_state &preview);

} // namespace vimbo
