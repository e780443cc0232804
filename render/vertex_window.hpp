// A path's vertices as the buffer on the GPU holds them, a few at a time: none of them
// is kept twice.
#pragma once

#include "mosaic/mosaic.hpp"
#include "mosaic/path_vertex.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

namespace vimbo
{

/// Reads the mosaic's vertices from `first` on. Main thread only.
void read_vertices(const mosaic_state &mosaic, std::int32_t first, std::span<path_vertex> vertices);

/// So many of them where they lie, to be unmapped before the mosaic is drawn or loaded;
/// null where the driver does not give them.
const path_vertex *map_vertices(const mosaic_state &mosaic, std::int32_t first, std::size_t count);
void unmap_vertices();

inline constexpr std::int32_t window_vertices = 1024;

/// The vertices that were read last. All zero: none. For a path that is gone through
/// from its end to its start.
struct vertex_window {
    path_vertex vertices[window_vertices];
    std::int32_t first;
    std::int32_t end;
};

/// Forgets what was read: another mosaic may be in the buffer.
void forget_vertices(vertex_window &window);

/// The vertices from `first` to `end`, or as many of the last of them as there is room
/// for, until the window is asked again.
std::span<const path_vertex> vertices_between(vertex_window &window, const mosaic_state &mosaic,
                                              std::int32_t first, std::int32_t end);

} // namespace vimbo
