// Two vertices at once, in single precision: every processor computes with four such numbers
// at a time; GCC and Clang have no plainer words for that.
#pragma once

#include "mosaic/path_vertex.hpp"

#include <cstring>

namespace vimbo
{

using four_lengths [[gnu::vector_size(16)]] = length_unit;
using four_floats [[gnu::vector_size(16)]] = float;

/// The places of two vertices, one after the other, rounded to single precision.
inline four_floats floats_of(const path_vertex *pair)
{
    four_lengths lengths;
    std::memcpy(&lengths, pair, sizeof lengths);
    return __builtin_convertvector(lengths, four_floats);
}

} // namespace vimbo
