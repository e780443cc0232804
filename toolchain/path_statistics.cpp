#include "toolchain/path_statistics.hpp"

#include <cmath>
#include <cstddef>

namespace toolchain
{

namespace
{

constexpr double tangent_of_an_eighth = 0.41421356237309504880; // of π

// One window of moves: the distance of each of its ends from its start, and the
// length of all its moves.
class window
{
public:
    explicit window(const vimbo::path_vertex &from) : start(from) {}

    void add(const vimbo::path_vertex &to, double length)
    {
        const double dx = static_cast<double>(to.x) - start.x;
        const double dy = static_cast<double>(to.y) - start.y;
        distance[count++] = std::sqrt(dx * dx + dy * dy);
        total += length;
    }

    bool is_full() const
    {
        return count == window_moves;
    }

    // Adds each distance's share of the total; true when there was one.
    bool add_shares(std::array<double, window_moves> &shares) const
    {
        if (total == 0)
            return false;
        for (std::size_t k = 0; k < window_moves; ++k)
            shares[k] += distance[k] / total;
        return true;
    }

private:
    vimbo::path_vertex start;
    std::array<double, window_moves> distance;
    std::size_t count = 0;
    double total = 0;
};

template <std::size_t Count>
void divide(std::array<double, Count> &values, double divisor)
{
    if (divisor == 0)
        return;
    for (double &value : values)
        value /= divisor;
}

// Bin within the right half of the upper half plane: dx > 0, dy >= 0.
int bin_of_quadrant(double dx, double dy)
{
    return (dy >= tangent_of_an_eighth * dx ? 1 : 0) + (dy >= dx ? 1 : 0) +
           (tangent_of_an_eighth * dy >= dx ? 1 : 0);
}

} // namespace

int direction_bin(double dx, double dy)
{
    constexpr int bins_per_quadrant = direction_bins / 4;
    // Turned by half a turn, the lower half plane is the upper one, 8 bins on.
    int first = 2 * bins_per_quadrant;
    if (dy < 0) {
        dx = -dx;
        dy = -dy;
        first = 0;
    }
    return dx > 0 ? first + bin_of_quadrant(dx, dy)
                  : first + bins_per_quadrant + bin_of_quadrant(dy, -dx);
}

path_statistics measure_path(std::span<const vimbo::path_vertex> moves)
{
    path_statistics result = {};
    double windows = 0;
    vimbo::path_vertex from = {0, 0};
    window current(from);
    for (const vimbo::path_vertex &to : moves) {
        const double dx = static_cast<double>(to.x) - from.x;
        const double dy = static_cast<double>(to.y) - from.y;
        const double length = std::sqrt(dx * dx + dy * dy);
        const bool mark = (to.y & 1) != 0;
        result.moves[mark ? 0 : 1] += length;
        if (mark && length > 0)
            result.directions[static_cast<std::size_t>(direction_bin(dx, dy))] += length;
        current.add(to, length);
        if (current.is_full()) {
            windows += current.add_shares(result.locality) ? 1 : 0;
            current = window(to);
        }
        from = to;
    }
    const double total = result.moves[0] + result.moves[1];
    divide(result.locality, windows);
    divide(result.directions, total);
    divide(result.moves, total);
    return result;
}

} // namespace toolchain
