#include "toolchain/move_list.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <future>
#include <numeric>

namespace toolchain
{

namespace
{

constexpr std::size_t reserved_bytes = max_moves * sizeof(vimbo::path_vertex);

bool is_mark(const vimbo::path_vertex &move)
{
    return (move.y & 1) != 0;
}

// Where the path is after its first `count` moves.
vimbo::path_vertex end_of(std::span<const vimbo::path_vertex> moves, std::size_t count)
{
    return count == 0 ? vimbo::path_vertex{0, 0} : moves[count - 1];
}

path_lengths measure_from(const vimbo::path_vertex &start,
                          std::span<const vimbo::path_vertex> moves)
{
    // In sums of their own, so that the compiler takes several moves at a time;
    // the flag multiplies, as marks and jumps may come in any order.
    constexpr std::size_t sums = 8;
    double all[sums] = {};
    double marked[sums] = {};
    const auto add = [&](std::size_t sum, const vimbo::path_vertex &from,
                         const vimbo::path_vertex &to) {
        const double dx = static_cast<double>(to.x) - from.x;
        const double dy = static_cast<double>(to.y) - from.y;
        const double length = std::sqrt(dx * dx + dy * dy);
        all[sum] += length;
        marked[sum] += length * (to.y & 1);
    };
    if (!moves.empty())
        add(0, start, moves.front());
    std::size_t i = 1;
    for (; i + sums <= moves.size(); i += sums)
        for (std::size_t sum = 0; sum < sums; ++sum)
            add(sum, moves[i + sum - 1], moves[i + sum]);
    for (; i < moves.size(); ++i)
        add(0, moves[i - 1], moves[i]);
    const double length = std::accumulate(all, all + sums, 0.0);
    const double mark_length = std::accumulate(marked, marked + sums, 0.0);
    return {mark_length / vimbo::length_units_per_mm,
            (length - mark_length) / vimbo::length_units_per_mm};
}

} // namespace

move_list::move_list()
{
    void *memory = mmap(nullptr, reserved_bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        return;
    // Page by page, its first use costs as much as the moves themselves.
    madvise(memory, reserved_bytes, MADV_HUGEPAGE);
    first = static_cast<vimbo::path_vertex *>(memory);
}

move_list::~move_list()
{
    if (first != nullptr)
        munmap(first, reserved_bytes);
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
    // Two threads, each with one half; where the system grants no second one the
    // first does both.
    const std::size_t half = moves.size() / 2;
    auto second =
        std::async([&] { return measure_from(end_of(moves, half), moves.subspan(half)); });
    const path_lengths first = measure_from({0, 0}, moves.first(half));
    const path_lengths rest = second.get();
    return {first.mark_mm + rest.mark_mm, first.jump_mm + rest.jump_mm};
}

} // namespace toolchain
