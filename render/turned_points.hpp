// Points along the edges of pixels' diamonds, x + y and x - y, where the edges lie at halves
// and the middles at whole numbers: both at once, as every processor computes with two such
// numbers at a time; GCC and Clang have no plainer words for that.
#pragma once

#include "mosaic/path_vertex.hpp"
#include "render/path_projection.hpp"

#include <bit>
#include <cstdint>

namespace vimbo
{

/// x + y, and x - y.
using turned_point [[gnu::vector_size(16)]] = double;

/// What is true of the one and of the other: all bits set, or none.
using turned_mask [[gnu::vector_size(16)]] = std::int64_t;

/// Where a projection puts a path's vertices so.
struct turned_projection {
    turned_point x_scale;
    turned_point y_scale;
    turned_point shift;
};

inline turned_projection turn(const path_projection &target)
{
    const turned_point x = {1, 1};
    const turned_point y = {1, -1};
    return {target.x.scale * x, target.y.scale * y, target.x.shift * x + target.y.shift * y};
}

inline turned_point place_of(const path_vertex &vertex, const turned_projection &target)
{
    return vertex.x * target.x_scale + vertex.y * target.y_scale + target.shift;
}

inline turned_point nearest_whole(const turned_point &at)
{
    constexpr double rounder = 0x1.8p52; // takes the fraction away without a call
    return at + rounder - rounder;
}

inline turned_point magnitude_of(const turned_point &at)
{
    constexpr turned_mask all_but_sign = {INT64_MAX, INT64_MAX};
    return std::bit_cast<turned_point>(std::bit_cast<turned_mask>(at) & all_but_sign);
}

} // namespace vimbo
