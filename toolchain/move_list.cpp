#include "toolchain/move_list.hpp"

#include "toolchain/system.hpp"

#include <algorithm>
#include <bit>
#include <cmath>

namespace toolchain
{

namespace
{

// Of moves that are handed on: enough for neither thread to wait for the other at
// every block.
constexpr std::size_t moves_handed_on = std::size_t{1} << 18;

bool is_mark(const vimbo::path_vertex &move)
{
    return (move.y & 1) != 0;
}

} // namespace

move_list::move_list(move_use use) : capacity(use == move_use::kept ? max_moves : moves_handed_on)
{
    static_assert(std::has_single_bit(max_moves) && std::has_single_bit(moves_handed_on));
    static_assert(max_moves % moves_at_a_time == 0 && moves_handed_on % moves_at_a_time == 0);
    first =
        static_cast<vimbo::path_vertex *>(reserve_memory(capacity * sizeof(vimbo::path_vertex)));
}

move_list::~move_list()
{
    if (first != nullptr)
        release_memory(first, capacity * sizeof(vimbo::path_vertex));
}

void move_list::centre(const move_extents &extents)
{
    const double centre_x = std::nearbyint((static_cast<double>(extents.left) + extents.right) / 2);
    const double centre_y = std::nearbyint((static_cast<double>(extents.bottom) + extents.top) / 2);
    // Centred, each extreme is half the extent away from the origin: it fits.
    for (vimbo::path_vertex &move : std::span(first, count)) {
        move.y =
            with_flag(static_cast<vimbo::length_unit>((move.y & ~1) - centre_y), is_mark(move));
        move.x = static_cast<vimbo::length_unit>(move.x - centre_x);
    }
}

std::span<const vimbo::path_vertex> move_list::moves() const
{
    return {first, count};
}

std::size_t move_list::move_count() const
{
    return count;
}

std::size_t move_list::mark_count() const
{
    return count - jumps;
}

// Hands on the block before it.
move_fault move_list::begin_block()
{
    if (first == nullptr)
        return move_fault::no_memory;
    if (count == max_moves)
        return move_fault::too_many;
    published.store(count, std::memory_order_release);
    published.notify_one();
    block_end += moves_at_a_time;
    // The new block's memory may still be read.
    std::size_t done = released.load(std::memory_order_acquire);
    while (block_end > done + capacity) {
        released.wait(done, std::memory_order_acquire);
        done = released.load(std::memory_order_acquire);
    }
    return move_fault::none;
}

void move_list::close()
{
    published.store(count | closed, std::memory_order_release);
    published.notify_one();
}

std::span<const vimbo::path_vertex> move_list::await_block(std::size_t taken) const
{
    published.wait(taken, std::memory_order_acquire);
    const std::size_t there = published.load(std::memory_order_acquire) & ~closed;
    // A block never lies across the end of the memory.
    return {first + taken % capacity, std::min(there - taken, moves_at_a_time)};
}

void move_list::release(std::size_t taken)
{
    released.store(taken, std::memory_order_release);
    released.notify_one();
}

} // namespace toolchain
