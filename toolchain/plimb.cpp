// The statistics tool's stand-in: measures a mosaic and prints 50 numbers, one a
// line: 32 of locality, 16 of directions, 2 of moves.
//
//   plimb MOSAIC
#include "mosaic/mosaic_file.hpp"
#include "platform/program_start.hpp"
#include "toolchain/path_statistics.hpp"
#include "toolchain/system.hpp"

#include <cstdio>

namespace
{

using namespace toolchain;

int fail(const char *path, const char *fault)
{
    std::fprintf(stderr, "plimb: %s: %s\n", path, fault);
    return 1;
}

template <std::size_t Count>
void print(const std::array<double, Count> &values)
{
    for (const double value : values)
        std::printf("%.9f\n", value);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    vimbo::start_program(argument_count, arguments);
    if (argument_count != 2) {
        std::fputs("usage: plimb MOSAIC\n", stderr);
        return 1;
    }
    const char *path = arguments[1];
    const std::span<const unsigned char> file = map_file(path);
    if (file.size() < vimbo::mosaic_header_size)
        return fail(path, "no mosaic");
    vimbo::mosaic_body body = {};
    if (!vimbo::read_mosaic_header(file.first<vimbo::mosaic_header_size>(),
                                   file.size() - vimbo::mosaic_header_size, body))
        return fail(path, "shorter than its header promises");

    const auto *moves =
        reinterpret_cast<const vimbo::path_vertex *>(file.data() + vimbo::mosaic_header_size);
    const path_statistics figures =
        measure_path({moves, body.byte_count / sizeof(vimbo::path_vertex)});
    print(figures.locality);
    print(figures.directions);
    print(figures.moves);
    return 0;
}
