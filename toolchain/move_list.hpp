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

/// What becomes of the moves: memory that is used for the first time costs as much
/// as the making of a move, so it is used again where they need not be kept.
enum class move_use { kept, handed_on };

/// Grows at its end only. One thread appends, another is handed the moves on, a
/// block at a time; the first waits for it when all memory is in use.
class move_list
{
public:
    explicit move_list(move_use use);
    ~move_list();
    move_list(const move_list &) = delete;
    move_list &operator=(const move_list &) = delete;

    /// Appends a move to (x, y), in length_unit, rounded to the nearest. Here, to
    /// be inlined: sources make moves by the million.
    move_fault append(double x, double y, bool mark)
    {
        if (!fits(x) || !fits(y))
            return move_fault::coordinate_range;
        if (count == block_end) {
            if (const move_fault fault = begin_block(); fault != move_fault::none)
                return fault;
        }
        first[count++ & (capacity - 1)] = {
            static_cast<vimbo::length_unit>(std::lrint(x)),
            with_flag(static_cast<vimbo::length_unit>(std::lrint(y)), mark)};
        jumps += mark ? 0 : 1;
        return move_fault::none;
    }

    /// Shifts all moves so that the middle of these extents, which are theirs, is
    /// the origin.
    void centre(const move_extents &extents);

    /// All moves, where they are kept.
    std::span<const vimbo::path_vertex> moves() const;
    std::size_t move_count() const;
    std::size_t mark_count() const;

    /// To be called by the appending thread after the last move.
    void close();
    /// For the other thread: the moves that follow the first so many, at most one
    /// block of them; waits until there are any. None once the list is closed and
    /// there are no more.
    std::span<const vimbo::path_vertex> await_block(std::size_t taken) const;
    /// The first so many are no longer needed.
    void release(std::size_t taken);

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

    move_fault begin_block();

    // Small enough to be still in the processor's cache when it is read, large enough for
    // the other thread not to be woken all the time.
    static constexpr std::size_t moves_at_a_time = std::size_t{1} << 16;

    static constexpr std::size_t cache_line = 64;

    static constexpr std::size_t closed = ~(~std::size_t{0} >> 1);

    std::size_t capacity;                // a power of two, and of several blocks
    vimbo::path_vertex *first = nullptr; // null when the system grants no memory
    std::size_t count = 0;
    std::size_t block_end = 0; // of the block that is being filled; none at first
    std::size_t jumps = 0;
    // Apart from what every move writes, as both threads look at them.
    alignas(cache_line) std::atomic<std::size_t> published = 0; // moves; once `closed`, with it
    std::atomic<std::size_t> released = 0;
};

} // namespace toolchain
