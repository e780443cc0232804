// Lines so short that they cover no pixel at all: of a path whose lines are a tenth of a
// pixel long, nine of ten.
//
// A line covers a pixel when it leaves that one's diamond. Between four diamonds there is
// a gap of the same shape, and both are squares of one size, turned by an eighth:
//
//      +---+---+---+
//      | /\|/\ |/\ |
//      |<  X  >X  >|      X: in a diamond and in the gap beside it
//      | \/|\/ |\/ |
//      +---+---+---+
//
// A line that lies within one such square leaves no diamond. Drivers round: what comes so
// close to an edge that rounding could decide may cover a pixel.
#pragma once

#include "mosaic/path_vertex.hpp"
#include "render/path_projection.hpp"

#include <cstdint>
#include <span>

namespace vimbo
{

inline constexpr std::size_t most_lines_at_once = 32;

/// Which lines of a strip may cover a pixel: bit i is that of the line from vertex i to
/// i + 1. `off` is rounding_of a box around them.
std::uint32_t lines_with_pixels(std::span<const path_vertex> strip, double off,
                                const path_projection &target);

} // namespace vimbo
