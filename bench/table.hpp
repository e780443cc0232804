// One line of the table that scripts/bench prints.
#pragma once

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <vector>

namespace bench
{

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

inline double mean(const std::vector<double> &values)
{
    return values.empty() ? 0
                          : std::accumulate(values.begin(), values.end(), 0.0) /
                                static_cast<double>(values.size());
}

/// A figure and its limit in some unit; `target` is what their ratio should not
/// exceed.
inline void print_row_in(const char *unit, const char *figure, double value, double limit,
                         double target)
{
    const double ratio = value / limit;
    std::printf("%-58s %10.2f %-3s %9.2f %-3s %7.2f  <= %.2f %s\n", figure, value, unit, limit,
                unit, ratio, target, ratio <= target ? "met" : "MISSED");
    std::fflush(stdout);
}

/// The same, in seconds, printed as milliseconds.
inline void print_row(const char *figure, double value, double limit, double target)
{
    constexpr double milliseconds = 1e3;
    print_row_in("ms", figure, value * milliseconds, limit * milliseconds, target);
}

} // namespace bench
