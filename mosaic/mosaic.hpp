// The tray's current mosaic: which file it is, and what of it is on the GPU.
#pragma once

#include "ui/frame_state.hpp"

#include <GL/glew.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace vimbo
{

inline constexpr int mosaics_per_tray = 8;
inline constexpr std::size_t tray_directory_capacity = 256;
/// Room for the tray directory, "/_mosaics/", a 32-bit number and ".mmv".
inline constexpr std::size_t mosaic_path_capacity = tray_directory_capacity + 32;

/// Main thread only.
struct mosaic_state {
    char tray_directory[tray_directory_capacity] = "./";
    std::int32_t mosaic_index; // 0 to 7
    char mosaic_path[mosaic_path_capacity];

    /// The loaded mosaic: all 0 while none is shown.
    GLuint mosaic_vao;
    GLuint mosaic_vbo;
    std::int32_t mosaic_vertex_count;
    /// Counts the loads, so that what was drawn of an earlier one can be told.
    std::uint32_t mosaic_generation;
};

/// Puts the path of the tray's directory of mosaics, or of the current mosaic's file,
/// into `out`.
void format_mosaic_directory(const mosaic_state &mosaic, std::span<char, mosaic_path_capacity> out);
void format_mosaic_path(const mosaic_state &mosaic, std::span<char, mosaic_path_capacity> out);

/// Makes `mosaic_path` the current mosaic's file.
void format_mosaic_path(mosaic_state &mosaic);

/// Asks for the mosaic to be read again at the end of this frame.
void request_mosaic_reload(frame_state &frame);

} // namespace vimbo
