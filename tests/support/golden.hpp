// Pictures of the program's panels that were looked at and stored, and how new
// ones are held against them.
#pragma once

#include "tests/support/image.hpp"
#include "tests/support/point.hpp"

#include <vector>

namespace rig
{

/// Where two pictures of one size differ. Drivers round edges differently, which
/// changes single pixels, or puts one a step aside; what an operator sees of a
/// change is larger, and goes one way. So a place is a block of three by three
/// pixels
/// - of which, in one channel, all nine are darker or all nine brighter;
/// - or whose mean is darker or brighter by more than the given;
/// - or with three pixels whose colour the other picture does not have near them.
struct picture_difference {
    std::vector<point> blocks; // their upper left corners, line by line
};
picture_difference compare(const image &before, const image &after, int most_mean_change);

/// For what Nuklear draws: a text that moves by a pixel changes blocks by about 25,
/// and drivers differ by one.
inline constexpr int panel_tolerance = 12;
/// For lines that the driver steps: two white pixels beside their place change a
/// block of the picture by 32.
inline constexpr int line_tolerance = 36;

/// Both, side by side, and a third picture with the blocks in red.
image side_by_side(const image &before, const image &after, const picture_difference &difference);

} // namespace rig
