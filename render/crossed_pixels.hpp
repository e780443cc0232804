// Which pixels a line covers for certain, worked out from its ends: what would else
// have to be read back from the driver, which costs as much as a thousand lines. And which
// it may cover at most.
//
// A line covers the pixels whose diamond it leaves. Of a line that is wider than high
// that is one pixel in each column whose centre it passes, `+`, and the first one when
// the line starts in its diamond:
//
//      +---+---+---+---+---+
//      |   |   |   | + | + o     the last column counts only when the line ends
//      o + | + | + |   |   |     outside of its diamond
//      +---+---+---+---+---+
//
// Drivers round: what comes so close to the edge of a pixel or of its diamond that
// rounding could decide is left open.
#pragma once

#include "mosaic/path_vertex.hpp"
#include "render/covered_pixels.hpp"
#include "render/path_projection.hpp"

#include <span>

namespace vimbo
{

/// Notes as covered what the lines of a strip cover for certain; `off` is rounding_of a box
/// around them. Does nothing where the view is so near that positions are not certain.
void cover_crossed(covered_pixels &covered, std::span<const path_vertex> strip, double off,
                   const path_projection &target);

/// True when every pixel that a line may cover is covered; `off` is rounding_of a box around
/// it. False also where the view is so near that positions are not certain.
bool is_line_hidden(const covered_pixels &covered, const path_vertex &from, const path_vertex &to,
                    double off, const path_projection &target);

} // namespace vimbo
