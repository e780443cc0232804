// The tray: a rounded rectangle, drawn as one closed line strip.
#pragma once

#include "mosaic/path_vertex.hpp"
#include "render/path_buffer.hpp"

#include <cstddef>
#include <span>

namespace vimbo
{

/// Distances between the centres of the corner arcs, and the arcs' radius; the
/// outline is larger than width and height by the radius on every side.
struct tray_extent {
    length_unit width = 100 * length_units_per_mm;
    length_unit height = 100 * length_units_per_mm;
    length_unit corner_radius = 10 * length_units_per_mm;
};

inline constexpr std::size_t vertices_per_corner = 17;
inline constexpr std::size_t tray_outline_vertices = 4 * vertices_per_corner + 1;

/// The outline's vertices, counter-clockwise from the right edge, all with flag
/// 0. Sums beyond 32 bits wrap around.
void compute_tray_outline(const tray_extent &extent,
                          std::span<path_vertex, tray_outline_vertices> vertices);

/// The outline on the GPU. Its names and count are given even when the driver
/// grants no memory; the buffer is then unfilled.
path_buffer build_tray_outline(length_unit width, length_unit height, length_unit radius);

} // namespace vimbo
