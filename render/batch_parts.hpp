// What of a chunk comes into a batch of a pass: all of it, or the parts and the single lines
// of it that can be seen.
//
//     chunk        |                                                               |
//     stretches    |               |               |               |               |   of 64
//     parts        |   |   |   |   |   |   |   |   |   |   |   |   |   |   |   |   |   of 16
//
// Each is looked at by the box around it (`path_sight`), from the end to the start, and left
// out where that cannot be seen. What a part covers for certain hides what comes after it.
#pragma once

#include "mosaic/mosaic.hpp"
#include "render/newest_first.hpp"
#include "render/path_projection.hpp"
#include "render/path_sight.hpp"

#include <cstdint>

namespace vimbo
{

/// Adds what can be seen of a chunk to the batch. Gives how many of its vertices count as
/// drawn: of long lines the drawn ones; of short ones all of a part, as going through them
/// takes as long.
std::int32_t take_chunk(newest_first &pass, const path_projection &target,
                        const mosaic_state &mosaic, std::int32_t chunk, const path_part &whole);

} // namespace vimbo
