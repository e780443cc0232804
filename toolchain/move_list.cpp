#include "toolchain/move_list.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace toolchain
{

namespace
{

constexpr std::size_t reserved_bytes = max_moves * sizeof(vimbo::path_vertex);

bool fits(double coordinate)
{
    // Below the limits, so that the flag bit cannot push y over them; false for NaN.
    return coordinate >= std::numeric_limits<vimbo::length_unit>::min() &&
           coordinate <= std::numeric_limits<vimbo::length_unit>::max();
}

vimbo::length_unit with_flag(vimbo::length_unit y, bool mark)
{
    return (y & ~1) | (mark ? 1 : 0);
}

bool is_mark(const vimbo::path_vertex &move)
{
    return (move.y & 1) != 0;
}

} // namespace

move_list::move_list()
{
    void *memory = mmap(nullptr, reserved_bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory != MAP_FAILED)
        first = static_cast<vimbo::path_vertex *>(memory);
}

move_list::~move_list()
{
    if (first != nullptr)
        munmap(first, reserved_bytes);
}

move_fault move_list::append(double x, double y, bool mark)
{
    const double nearest_x = std::nearbyint(x);
    const double nearest_y = std::nearbyint(y);
    if (!fits(nearest_x) || !fits(nearest_y))
        return move_fault::coordinate_range;
    if (count == max_moves)
        return move_fault::too_many;
    if (first == nullptr)
        return move_fault::no_memory;
    first[count++] = {static_cast<vimbo::length_unit>(nearest_x),
                      with_flag(static_cast<vimbo::length_unit>(nearest_y), mark)};
    marks += mark ? 1 : 0;
    return move_fault::none;
}

void move_list::centre()
{
    const move_extents box = extents();
    const double centre_x = std::nearbyint((box.left + box.right) / 2);
    const double centre_y = std::nearbyint((box.bottom + box.top) / 2);
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

std::size_t move_list::mark_count() const
{
    return marks;
}

move_extents move_list::extents() const
{
    if (count == 0)
        return {};
    std::int32_t left = first->x;
    std::int32_t right = first->x;
    std::int32_t bottom = first->y;
    std::int32_t top = first->y;
    for (const vimbo::path_vertex &move : moves()) {
        left = std::min(left, move.x);
        right = std::max(right, move.x);
        bottom = std::min(bottom, move.y);
        top = std::max(top, move.y);
    }
    return {static_cast<double>(left), static_cast<double>(right), static_cast<double>(bottom),
            static_cast<double>(top)};
}

path_lengths measure(std::span<const vimbo::path_vertex> moves)
{
    path_lengths lengths = {};
    vimbo::path_vertex from = {0, 0};
    for (const vimbo::path_vertex &to : moves) {
        const double length =
            std::hypot(static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y);
        (is_mark(to) ? lengths.mark_mm : lengths.jump_mm) += length / vimbo::length_units_per_mm;
        from = to;
    }
    return lengths;
}

} // namespace toolchain
