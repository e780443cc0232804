// Any output of the statistics tool.
#include "stats/stats_run.hpp"

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    FILE *stream = fmemopen(const_cast<unsigned char *>(data), size, "r");
    if (stream == nullptr)
        return 0;
    const auto *values = static_cast<const float *>(vimbo::stats_reader(stream));
    std::fclose(stream);
    return values == nullptr ? 1 : 0;
}
