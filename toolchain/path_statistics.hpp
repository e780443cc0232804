// The figures that describe a path. README.md of this folder defines each.
#pragma once

#include "mosaic/path_vertex.hpp"

#include <array>
#include <span>

namespace toolchain
{

inline constexpr int window_moves = 32;
inline constexpr int direction_bins = 16;

struct path_statistics {
    std::array<double, window_moves> locality;     // k = 1 to 32
    std::array<double, direction_bins> directions; // from -π upward
    std::array<double, 2> moves;                   // marks, jumps
};

/// Measures the path that starts at the origin and makes these moves, in one
/// pass, with as many threads as the machine has processors. The same moves give
/// the same figures to the last bit.
path_statistics measure_path(std::span<const vimbo::path_vertex> moves);

} // namespace toolchain
