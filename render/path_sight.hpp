// Whether a part of a path can be seen, told by the box around it.
//
// A line covers pixels whose diamond it leaves, so lines within a box can cover those whose
// diamond the box meets. But drivers move an end that lies in a diamond: along the line, to
// the middle of the pixel's column, or of its row. If it lies beside an edge of the diamond,
// and the line goes along that edge, rounding may take it past the corner:
//
//      +-------+
//      |  q /\ |
//      |   /  \|
//      +---y---+      the line from x to z is drawn as from y, and may cover q, whose
//      |  x \  |      diamond its box does not meet
//      | z  p\ |
//      +-------+
//
// So unless half a pixel around the box is covered, too, lines that go along such edges are
// looked for. Most paths have few of them, and of a hatch nothing would be left out otherwise.
#pragma once

#include "mosaic/path_vertex.hpp"
#include "render/covered_pixels.hpp"
#include "render/path_chunks.hpp"
#include "render/path_projection.hpp"

#include <cstdint>
#include <span>

namespace vimbo
{

/// Segments that end at these vertices, and where they lie.
struct path_part {
    std::int32_t first;
    std::int32_t end;
    pixel_box box;
    pixel_range range; // range_of the box
    double off;        // rounding_of what the box holds
};

/// The part of a path that lies within that box.
path_part part_of(const covered_pixels &covered, const path_projection &target, const path_box &box,
                  std::int32_t first, std::int32_t end);

/// What is doubtful can be seen only where lines go along the edges of diamonds.
enum class path_sight : std::uint8_t { seen, doubtful, covered, outside };

path_sight sight_of(const covered_pixels &covered, const path_part &part);

/// True when no line of a doubtful part goes so that the part can be seen; `strip` is its
/// vertices and the one before.
bool is_doubt_unfounded(const covered_pixels &covered, const path_part &part,
                        std::span<const path_vertex> strip, const path_projection &target);

/// Which lines of a doubtful part may be seen, of at most 32: bit i is that of the line from
/// vertex i to i + 1. It takes longer, and finds fewer.
std::uint32_t doubtful_lines(std::span<const path_vertex> strip, double off,
                             const path_projection &target);

} // namespace vimbo
