// Any bytes as the mosaic that the statistics tool's stand-in measures: its
// shares are shares, whatever the points.
#include "mosaic/mosaic_file.hpp"
#include "toolchain/path_statistics.hpp"

#include <cstdlib>
#include <cstring>
#include <vector>

namespace
{

void require_share(double value)
{
    constexpr double rounding = 1e-9;
    if (!(value >= 0 && value <= 1 + rounding))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size < vimbo::mosaic_header_size)
        return 0;
    vimbo::mosaic_body body = {};
    const std::span<const unsigned char> file(data, size);
    if (!vimbo::read_mosaic_header(file.first<vimbo::mosaic_header_size>(),
                                   size - vimbo::mosaic_header_size, body))
        return 0;
    std::vector<vimbo::path_vertex> moves(body.byte_count / sizeof(vimbo::path_vertex));
    if (!moves.empty())
        std::memcpy(moves.data(), data + vimbo::mosaic_header_size,
                    moves.size() * sizeof(vimbo::path_vertex));
    const toolchain::path_statistics figures = toolchain::measure_path(moves);
    for (const double value : figures.locality)
        require_share(value);
    for (const double value : figures.directions)
        require_share(value);
    for (const double value : figures.moves)
        require_share(value);
    return 0;
}
