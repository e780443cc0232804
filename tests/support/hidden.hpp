// Whether a box is hidden, wherever it lies.
#pragma once

#include "render/covered_pixels.hpp"

namespace rig
{

inline bool is_hidden(const vimbo::covered_pixels &covered, const vimbo::pixel_box &box)
{
    return vimbo::is_hidden(covered, box, range_of(covered, box));
}

inline bool was_hidden(const vimbo::covered_pixels &covered, const vimbo::pixel_box &box)
{
    return vimbo::was_hidden(covered, box, range_of(covered, box));
}

} // namespace rig
