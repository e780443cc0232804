// One line of the table that scripts/bench prints.
#pragma once

#include <algorithm>
#include <cstdio>
#include <vector>

namespace bench
{

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

/// Seconds, as milliseconds; `target` is what the ratio should not exceed.
inline void print_row(const char *figure, double value, double limit, double target)
{
    std::printf("%-58s %10.2f ms %10.2f ms %7.2f  <= %.2f %s\n", figure, value * 1e3, limit * 1e3,
                value / limit, target, value > 0 && value / limit <= target ? "met" : "MISSED");
    std::fflush(stdout);
}

} // namespace bench
