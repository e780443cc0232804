// Where each part of a long path lies, so that a part that cannot be seen need not
// be drawn. A path is cut into chunks of consecutive segments, each with its box:
//
//     vertices   0 1 2 3 ... 63 | 64 65 ... 127 | 128 ...
//     chunk            0        |       1       |
//     segments that end at its vertices, so the box holds the last vertex of the
//     chunk before it, too: the strip goes on from there
//
// Sixty-four chunks are a group, with a box around theirs: what lies outside of a
// picture is left out group by group.
//
// The boxes take the same memory whatever the path's length: a longer one has
// longer chunks. They are read from the buffer that is drawn, stretch by stretch.
#pragma once

#include "mosaic/mosaic.hpp"
#include "mosaic/path_vertex.hpp"

#include <cstdint>
#include <span>

namespace vimbo
{

/// A box that holds some vertices, edges inside: the least one, or larger by a share of
/// 2⁻²³ of where it lies.
struct path_box {
    length_unit left;
    length_unit bottom;
    length_unit right;
    length_unit top;
};

/// The box of these vertices, at least one.
path_box box_around(std::span<const path_vertex> vertices);

inline constexpr std::int32_t chunk_capacity = 1 << 19;
inline constexpr std::int32_t group_chunks = 64;
/// As many vertices are read from the buffer at a time, a whole number of chunks.
inline constexpr std::int32_t stretch_vertices = 1 << 13;

/// All zero: no path. 8 MiB and an eighth. Main thread only.
struct path_chunks {
    path_box boxes[chunk_capacity];
    path_box group_boxes[chunk_capacity / group_chunks];
    std::int32_t vertex_count;   // of the path
    std::int32_t chunk_vertices; // of each chunk but the last
    std::int32_t boxed_vertices; // of the path, from its start
    path_vertex last_boxed;
    std::uint32_t mosaic_generation;
};

/// Makes the chunks those of this mosaic, without boxes where they were not.
void fit_chunks(path_chunks &chunks, const mosaic_state &mosaic);

/// True when every chunk of this mosaic has its box.
bool are_boxed(const path_chunks &chunks, const mosaic_state &mosaic);

/// Reads the next stretch of the mosaic's vertices and boxes it, some ten
/// microseconds' work.
void box_stretch(path_chunks &chunks, const mosaic_state &mosaic);

/// Adds the next vertices of the path to their chunks' boxes.
void box_vertices(path_chunks &chunks, std::span<const path_vertex> vertices);

} // namespace vimbo
