// Looks at the depth buffer, which tell what a pass has covered so far: what nothing was
// drawn on is at the far end, what was is in the nearer half.
//
// A look waits for the driver, and costs as much as drawing a hundred lines or more. How
// far apart they are depends on what the last ones have spared.
#pragma once

#include "render/covered_pixels.hpp"
#include "render/picture_area.hpp"

#include <cstdint>

namespace vimbo
{

/// All zero: none yet. Main thread only.
struct depth_looks {
    std::int32_t look_after; // vertices to draw before the next look
    std::int32_t unseen;     // vertices drawn since the last one
    pixel_range touched;     // by them
    std::int64_t spared;     // vertices left out thanks to the last look
    double spared_of_late;   // the same, a mean in which the last looks count most
    double seeing;           // seconds that it took to read the depths
    double least_wait;       // seconds that a look has waited for the driver, at least
};

/// Begins a pass; what was learnt of another is kept.
void begin_looks(depth_looks &looks);

/// Notes that what was drawn may have covered pixels of this range.
void touch(depth_looks &looks, const pixel_range &range);

bool is_look_due(const depth_looks &looks);

/// Waits for what was drawn and notes what it covers, in the framebuffer's area;
/// `vertices_per_second` says what a look is worth.
void look_at_depths(depth_looks &looks, covered_pixels &covered, const picture_area &area,
                    double vertices_per_second);

} // namespace vimbo
