// The moves that a source makes, as they will stand in a mosaic.
#pragma once

#include "mosaic/path_vertex.hpp"
#include "toolchain/path_summary.hpp"

#include <atomic>
#include <cmath>
#include <cstddef>
#include <span>

namespace toolchain
{

/// The most moves that a mosaic of this tool has.
inline constexpr std::size_t max_moves = std::size_t{1} << 28;

/// What stopped a move from being taken.
enum class move_fault { none, coordinate_range, too_many, no_memory };

/// Grows at its end only; its memory is reserved once and filled as needed. One
/// thread appends, and another may read what is published meanwhile.
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
        if (count % moves_at_a_time == 0)
            publish();
        return move_fault::none;
    }

    /// Shifts all moves so that the middle of these extents, which are theirs, is
    /// the origin.
    void centre(const move_extents &extents);

    /// All moves; for the appending thread, or once the list is closed.
    std::span<const vimbo::path_vertex> moves() const;
    std::size_t mark_count() const;

    /// Once the last move is made: nobody waits for more.
    void close();
    /// For the other thread: waits for more moves than so many and gives their
    /// number, or 0 once the list is closed.
    std::size_t await_more_than(std::size_t known) const;
    std::span<const vimbo::path_vertex> published(std::size_t from, std::size_t to) const;

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

    void publish();

    // Small enough to be still in the processor's cache when it is read.
    static constexpr std::size_t moves_at_a_time = std::size_t{1} << 14;
    static constexpr std::size_t closed = ~std::size_t{0};

    std::atomic<std::size_t> published_count = 0;
    vimbo::path_vertex *first = nullptr; // null when the system grants no memory
    std::size_t count = 0;
    std::size_t marks = 0;
};

} // namespace toolchain
