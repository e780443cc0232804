// A long path drawn so that what is covered again later is not drawn at all: its
// newest chunks first, each batch of them farther away than the batch before it.
//
//     path      0 ............................................ end
//     chunks    |   |   |   |   |   |   |   |   |   |   |   |
//     batches           ... |  batch 3  | batch 2 |  batch 1  |    drawn from right
//     depth           far 1 ... 3 steps   2 steps    1 step        to left
//     slices                ...   slice 2 |       slice 1     |    between frames
//
// Within a batch all lines have one depth and are drawn in the path's order, and
// with GL_LEQUAL the later one wins; an older batch is farther and never covers a
// newer one. So the picture is, to the pixel, that of one draw in the path's order.
// Chunks whose every pixel is covered, or which lie outside of the picture, are left out,
// and so are parts of them, long lines by themselves, and lines so short that they cover no
// pixel (`blank_lines`). Most of what a chunk covers is worked out of its lines
// (`crossed_pixels`) as soon as the chunk is in a batch. What that leaves open is seen by a
// look at the depths, now and then (`depth_looks`).
#pragma once

#include "render/covered_pixels.hpp"
#include "render/depth_looks.hpp"
#include "render/path_buffer.hpp"
#include "render/path_chunks.hpp"
#include "render/path_projection.hpp"
#include "render/picture_parts.hpp"
#include "render/vertex_window.hpp"

#include <cstdint>

namespace vimbo
{

/// One pass over a part of a path, that ends with every line of it drawn or known
/// to be covered. All zero: none under way. Main thread only.
struct newest_first {
    bool under_way;
    std::int32_t first;   // the vertices at whose segments the pass is, from
    std::int32_t undrawn; // here, to here; those up to its end are done
    std::int32_t batches; // drawn in this pass
    std::int32_t drawn;   // vertices of theirs, blank lines between them included
    path_box visible;     // what lies beside it is outside of the picture

    std::int32_t gone_through; // vertices in view, of this pass
    std::int32_t in_view;      // the same, of late;
    std::int32_t left_out;     // of these
    bool much_left_out;        // many of them were

    depth_looks looks;

    path_runs runs; // of the batch
    vertex_window vertices;
    covered_pixels covered;
};

/// Begins a pass over the segments that end at the vertices `first` to `end`, on
/// top of what the target's area shows. For each batch the framebuffer is bound and the area
/// begun; the depths there are the pass's own. covered_pixels must have room for the area.
void begin_newest_first(newest_first &pass, const path_projection &target, std::int32_t first,
                        std::int32_t end);

/// Draws a batch of at most about so many vertices, and looks at the depths when it
/// is time to: `vertices_per_second` says what a look is worth. Gives how many count as
/// drawn.
std::int32_t draw_newest(newest_first &pass, const path_projection &target,
                         const path_chunks &chunks, const picture_parts &parts,
                         std::int32_t most_vertices, double vertices_per_second);

/// True when no more vertices in view are left than a pass has gone through: it should take
/// no longer than it has taken so far.
bool is_half_through(const newest_first &pass, const path_chunks &chunks);

} // namespace vimbo
