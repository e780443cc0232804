// Draws the mosaic and the tray's outline into the Preview panel's rectangle.
#pragma once

#include "render/kept_picture.hpp"
#include "render/path_buffer.hpp"
#include "render/picture_parts.hpp"
#include "render/preview_panel.hpp"

#include <cstdint>

namespace vimbo
{

/// The view as a matrix for normalised vertices. The aspect is the whole
/// window's; at zoom 1 the picture's height shows about 262 mm.
path_matrix preview_matrix(const preview_state &preview, std::int32_t window_width,
                           std::int32_t window_height);

/// How many of the path's vertices the replay position shows.
std::int32_t replayed_vertices(std::int32_t vertex_count, std::size_t replay_position);

/// The picture as it stands, over whatever the rectangle held; from what is kept
/// of it as far as that goes.
void draw_preview(const frame_state &frame, const preview_state &preview,
                  const picture_parts &parts, kept_picture &kept);

/// The same without anything kept.
void draw_preview_directly(const frame_state &frame, const preview_state &preview,
                           const picture_parts &parts);

} // namespace vimbo
