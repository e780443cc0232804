// What a source's moves come to, as the evaluator tells it.
#pragma once

#include "mosaic/path_vertex.hpp"

#include <cstdint>
#include <limits>
#include <span>

namespace toolchain
{

/// Smallest rectangle around all moves' ends, in length_unit. Without a move its
/// left is right of its right.
struct move_extents {
    std::int32_t left = std::numeric_limits<std::int32_t>::max();
    std::int32_t right = std::numeric_limits<std::int32_t>::min();
    std::int32_t bottom = left;
    std::int32_t top = right;
};

/// The path starts at the origin. All zero: no moves yet.
struct path_summary {
    double length = 0; // length_unit
    double mark_length = 0;
    move_extents extents;
    vimbo::path_vertex end = {0, 0};
};

/// Adds the moves that come next.
void add_moves(path_summary &summary, std::span<const vimbo::path_vertex> moves);

} // namespace toolchain
