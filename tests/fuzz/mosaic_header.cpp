// Any bytes as a mosaic file's header and body: what is promised to be drawn
// must be there.
#include "mosaic/mosaic_file.hpp"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size < vimbo::mosaic_header_size)
        return 0;
    const std::uint64_t held = size - vimbo::mosaic_header_size;
    vimbo::mosaic_body body = {};
    const std::span<const unsigned char> file(data, size);
    if (!vimbo::read_mosaic_header(file.first<vimbo::mosaic_header_size>(), held, body))
        return 0;
    if (body.byte_count > held || body.vertex_count < 1 ||
        (static_cast<std::uint64_t>(body.vertex_count) - 1) * 8 > body.byte_count)
        std::abort();
    return 0;
}
