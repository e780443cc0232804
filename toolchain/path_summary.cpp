#include "toolchain/path_summary.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace toolchain
{

namespace
{

void add_extents(move_extents &extents, std::span<const vimbo::path_vertex> moves)
{
    for (const vimbo::path_vertex &move : moves) {
        extents.left = std::min(extents.left, move.x);
        extents.right = std::max(extents.right, move.x);
        extents.bottom = std::min(extents.bottom, move.y);
        extents.top = std::max(extents.top, move.y);
    }
}

void add_lengths(path_summary &summary, std::span<const vimbo::path_vertex> moves)
{
    // In sums of their own, so that the compiler vectorises the loop; the flag multiplies, as marks
    // and jumps may come in any order.
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
    add(0, summary.end, moves.front());
    std::size_t i = 1;
    for (; i + sums <= moves.size(); i += sums)
        for (std::size_t sum = 0; sum < sums; ++sum)
            add(sum, moves[i + sum - 1], moves[i + sum]);
    for (; i < moves.size(); ++i)
        add(0, moves[i - 1], moves[i]);
    summary.length += std::accumulate(all, all + sums, 0.0);
    summary.mark_length += std::accumulate(marked, marked + sums, 0.0);
}

} // namespace

void add_moves(path_summary &summary, std::span<const vimbo::path_vertex> moves)
{
    if (moves.empty())
        return;
    add_lengths(summary, moves);
    add_extents(summary.extents, moves);
    summary.end = moves.back();
}

} // namespace toolchain
