#pragma once

#include <cstdint>

namespace vimbo
{

/// A length in 1/256000 mm.
using length_unit = std::int32_t;
inline constexpr length_unit length_units_per_mm = 256000;

/// One point of a path: the record of a mosaic file's body and of a GPU buffer
/// alike, so that a file goes up as it stands. Bit 0 of y tells how the move
/// that ends here is made, 1 a mark, 0 a jump; the position is y with that bit.
struct path_vertex {
    length_unit x;
    length_unit y;
};
static_assert(sizeof(path_vertex) == 8);

} // namespace vimbo
