#include "toolchain/path_statistics.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace toolchain
{

namespace
{

constexpr double tangent_of_an_eighth = 0.41421356237309504880; // of π

// Bin of the direction of (dx, dy), not both 0: bin b holds the angles from
// -π + b π/8 up to, but without, the next bin's; π itself is in the last. In
// plain arithmetic and without a branch, so that the compiler vectorises it.
inline double bin_number(double dx, double dy)
{
    // Turned by half a turn, the lower half plane is the upper one, 8 bins on.
    const double turn = dy < 0 ? -1.0 : 1.0;
    const double upper_dx = dx * turn;
    const double upper_dy = dy * turn;
    // Turned back by a quarter, the left half of that is the right one, 4 bins on.
    const double x = upper_dx > 0 ? upper_dx : upper_dy;
    const double y = upper_dx > 0 ? upper_dy : -upper_dx;
    const double first = (dy < 0 ? 0.0 : 8.0) + (upper_dx > 0 ? 0.0 : 4.0);
    return first + (y >= tangent_of_an_eighth * x ? 1.0 : 0.0) + (y >= x ? 1.0 : 0.0) +
           (tangent_of_an_eighth * y >= x ? 1.0 : 0.0);
}

// One window of moves, laid out so that the compiler vectorises what is done to it.
struct window {
    double x[window_moves + 1], y[window_moves + 1]; // of the ends, the start first
    double length[window_moves];
    double marked[window_moves]; // the length where the move is a mark, else 0
    double bin[window_moves];
};

using window_ends = std::span<const vimbo::path_vertex, window_moves>;

// The path's last window, when it is not full, goes on with moves of no length
// where the path ends: every window is laid out by loops of the same count.
void fill_up(std::array<vimbo::path_vertex, window_moves> &ends,
             std::span<const vimbo::path_vertex> moves)
{
    std::ranges::fill(ends, moves.back());
    std::ranges::copy(moves, ends.begin());
}

void lay_out(window &w, const vimbo::path_vertex &start, window_ends ends)
{
    w.x[0] = start.x;
    w.y[0] = start.y;
    for (std::size_t i = 0; i < window_moves; ++i) {
        w.x[i + 1] = ends[i].x;
        w.y[i + 1] = ends[i].y;
        w.marked[i] = ends[i].y & 1;
    }
    for (std::size_t i = 0; i < window_moves; ++i) {
        const double dx = w.x[i + 1] - w.x[i];
        const double dy = w.y[i + 1] - w.y[i];
        w.length[i] = std::sqrt(dx * dx + dy * dy);
    }
    for (std::size_t i = 0; i < window_moves; ++i)
        w.marked[i] *= w.length[i];
    for (std::size_t i = 0; i < window_moves; ++i)
        w.bin[i] = bin_number(w.x[i + 1] - w.x[i], w.y[i + 1] - w.y[i]);
}

// Adds the window's shares of its length; false when it has none.
bool add_shares(const window &w, double total, std::array<double, window_moves> &shares)
{
    if (total == 0)
        return false;
    const double scale = 1 / total;
    for (std::size_t k = 0; k < window_moves; ++k) {
        const double dx = w.x[k + 1] - w.x[0];
        const double dy = w.y[k + 1] - w.y[0];
        shares[k] += std::sqrt(dx * dx + dy * dy) * scale;
    }
    return true;
}

template <std::size_t Count>
void divide(std::array<double, Count> &values, double divisor)
{
    if (divisor == 0)
        return;
    for (double &value : values)
        value /= divisor;
}

// What the figures are made of, of a stretch of the path.
struct path_sums {
    std::array<double, window_moves> locality = {};
    std::array<double, direction_bins> directions = {}; // length of marks
    double windows = 0;                                 // full ones of some length
    double length = 0;

    path_sums &operator+=(const path_sums &other)
    {
        for (std::size_t k = 0; k < locality.size(); ++k)
            locality[k] += other.locality[k];
        for (std::size_t bin = 0; bin < directions.size(); ++bin)
            directions[bin] += other.directions[bin];
        windows += other.windows;
        length += other.length;
        return *this;
    }
};

// A stretch is what a thread takes at a time: whole windows, and long enough for
// its taking to cost nothing.
constexpr std::size_t stretch_moves = std::size_t{1} << 20;
static_assert(stretch_moves % window_moves == 0);

path_sums sums_of(vimbo::path_vertex start, std::span<const vimbo::path_vertex> moves)
{
    // Neighbours often have the same direction; in sums of their own they do not
    // wait for each other.
    constexpr std::size_t sums = 4;
    double directions[sums][direction_bins] = {};
    path_sums result;
    std::array<vimbo::path_vertex, window_moves> last_ends;
    window current;
    while (!moves.empty()) {
        const bool full = moves.size() >= window_moves;
        if (!full)
            fill_up(last_ends, moves);
        const window_ends ends = full ? moves.first<window_moves>() : window_ends(last_ends);
        lay_out(current, start, ends);
        double total = 0;
        for (std::size_t i = 0; i < window_moves; ++i) {
            total += current.length[i];
            directions[i % sums][static_cast<std::size_t>(current.bin[i])] += current.marked[i];
        }
        result.windows += full && add_shares(current, total, result.locality) ? 1 : 0;
        result.length += total;
        start = ends.back();
        moves = moves.subspan(std::min<std::size_t>(moves.size(), window_moves));
    }
    for (const auto &sum : directions)
        for (std::size_t bin = 0; bin < direction_bins; ++bin)
            result.directions[bin] += sum[bin];
    return result;
}

path_statistics shares_of(const path_sums &sums)
{
    path_statistics result = {sums.locality, sums.directions, {}};
    for (const double length : sums.directions)
        result.moves[0] += length;
    result.moves[1] = std::max(sums.length - result.moves[0], 0.0);
    divide(result.locality, sums.windows);
    divide(result.directions, sums.length);
    divide(result.moves, sums.length);
    return result;
}

} // namespace

path_statistics measure_path(std::span<const vimbo::path_vertex> moves)
{
    std::vector<path_sums> stretches((moves.size() + stretch_moves - 1) / stretch_moves);
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = 0; (i = next++) < stretches.size();) {
            const auto rest = moves.subspan(i * stretch_moves);
            const vimbo::path_vertex start =
                i == 0 ? vimbo::path_vertex{0, 0} : *(&rest.front() - 1);
            stretches[i] = sums_of(start, rest.first(std::min(rest.size(), stretch_moves)));
        }
    };
    {
        const std::size_t helpers =
            std::min<std::size_t>(std::thread::hardware_concurrency(), stretches.size());
        std::vector<std::jthread> threads;
        try {
            while (threads.size() + 1 < helpers)
                threads.emplace_back(work);
        } catch (const std::system_error &) {
            // The system grants no more: those that there are will do.
        }
        work();
    }
    // In the path's order, so that the figures do not hang on who came first.
    path_sums all = {};
    for (const path_sums &stretch : stretches)
        all += stretch;
    return shares_of(all);
}

} // namespace toolchain
