// The moves that a source makes, as they will stand in a mosaic.
#pragma once

#include "mosaic/path_vertex.hpp"

#include <cmath>
#include <cstddef>
#include <span>

namespace toolchain
{

/// The most moves that a mosaic of this tool has.
inline constexpr std::size_t max_moves = std::size_t{1} << 28;

/// What stopped a move from being taken.
enum class move_fault { none, coordinate_range, too_many, no_memory };

/// Smallest rectangle around all moves' ends.
struct move_extents {
    double left, right, bottom, top; // length_unit
};

/// Grows at its end only; its memory is reserved once and filled as needed.
class move_list
{
public:
    move_list();
    ~move_list();
    move_list(const move_list &) = delete;
    move_list &operator=(const move_list &) = delete;

    /// Appends a move to (x, y), in length_unit, rounded to the nearest. Here, to
    /// be inlined: sources make moves by the million.
    move_fault append(double x, double y, bool mark)
    {
        if (!fits(x) || !fits(y))
            return move_fault::coordinate_range;
        if (count == max_moves)
            return move_fault::too_many;
        if (first == nullptr)
            return move_fault::no_memory;
        first[count++] = {static_cast<vimbo::length_unit>(std::lrint(x)),
                          with_flag(static_cast<vimbo::length_unit>(std::lrint(y)), mark)};
        marks += mark ? 1 : 0;
        return move_fault::none;
    }

    /// Shifts all moves so that the middle of their extents is the origin.
    void centre();

    std::span<const vimbo::path_vertex> moves() const;
    std::size_t mark_count() const;
    move_extents extents() const;

private:
    // Its nearest whole number is a coordinate: a half goes to the even one. False
    // for NaN.
    static bool fits(double coordinate)
    {
        return coordinate >= -2147483648.5 && coordinate < 2147483647.5;
    }

    static vimbo::length_unit with_flag(vimbo::length_unit y, bool mark)
    {
        return (y & ~1) | (mark ? 1 : 0);
    }

    vimbo::path_vertex *first = nullptr; // null when the system grants no memory
    std::size_t count = 0;
    std::size_t marks = 0;
};

/// Length of the marks and of the jumps in millimetres; the path starts at the
/// origin.
struct path_lengths {
    double mark_mm, jump_mm;
};
path_lengths measure(std::span<const vimbo::path_vertex> moves);

} // namespace toolchain
