// The two flag words, and the only place where their bits have values.
#pragma once

#include <cstdint>

namespace vimbo
{

/// Bits of `frame_flags`: what this frame's layout asks of the rest of the
/// frame. All but `return_label` are cleared at the start of each frame.
namespace frame_flag
{
inline constexpr std::uint32_t preview_laid_out = 1;
inline constexpr std::uint32_t reload_mosaic = 2;
inline constexpr std::uint32_t quit = 4;
inline constexpr std::uint32_t return_label = 8; // the quit button reads "↩"; nothing sets it yet
} // namespace frame_flag

/// Bits of `ui_flags`: panels, modes, options and running jobs. Kept for the
/// whole run; all start clear.
namespace ui_flag
{
inline constexpr std::uint32_t bottom_shown = 0x1;
inline constexpr std::uint32_t preview_shown = 0x2;
inline constexpr std::uint32_t save_as_mode = 0x4;
inline constexpr std::uint32_t delete_armed = 0x8;
inline constexpr std::uint32_t eval_raw = 0x10;
inline constexpr std::uint32_t eval_center = 0x20;
inline constexpr std::uint32_t eval_running = 0x40;
inline constexpr std::uint32_t stats_shown = 0x80;
inline constexpr std::uint32_t stats_running = 0x100;
} // namespace ui_flag

constexpr bool has_flag(std::uint32_t word, std::uint32_t bit)
{
    return (word & bit) != 0;
}

} // namespace vimbo
