// The moves that a source makes, as they will stand in a mosaic.
#pragma once

#include "mosaic/path_vertex.hpp"

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

    /// Appends a move to (x, y), in length_unit, rounded to the nearest.
    move_fault append(double x, double y, bool mark);

    /// Shifts all moves so that the middle of their extents is the origin.
    void centre();

    std::span<const vimbo::path_vertex> moves() const;
    std::size_t mark_count() const;
    move_extents extents() const;

private:
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
