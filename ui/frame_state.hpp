#pragma once

#include "ui/pixel_ratio.hpp"

#include <cstddef>
#include <cstdint>

struct nk_context;

namespace vimbo
{

inline constexpr std::size_t scratch_capacity = 4096;

/// Seconds from one frame to the next where nothing happens.
inline constexpr double frame_time = 1.0 / 30.0;

/// What every panel is laid out with. Main thread only.
struct frame_state {
    nk_context *context;

    /// The window's size in its own units, which all layout and all input count in:
    /// the wanted one until the window is there, then read from it at the start of
    /// every frame.
    std::int32_t window_width = 1920;
    std::int32_t window_height = 1080;

    /// Pixels of the framebuffer in one of these units: more than 1 on a screen of
    /// higher density. Read as often; only ui/pixel_ratio multiplies with it.
    pixel_ratio ratio;

    std::uint32_t frame_flags; // bits: frame_flag
    std::uint32_t ui_flags;    // bits: ui_flag

    /// This layout only takes input that the frame's shown layout could not take
    /// with the rest: nothing in it that counts frames moves on.
    bool input_only;

    /// Commands and tooltips are formatted here; it holds nothing from one use
    /// to the next.
    char scratch_text[scratch_capacity];
};

} // namespace vimbo
