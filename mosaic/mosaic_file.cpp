#include "mosaic/mosaic_file.hpp"

#include "mosaic/path_vertex.hpp"

#include <bit>
#include <cstring>

namespace vimbo
{

// The header's words are taken, and the moves go to the GPU, as they stand.
static_assert(std::endian::native == std::endian::little);

bool read_mosaic_header(std::span<const unsigned char, mosaic_header_size> header,
                        std::uint64_t body_bytes, mosaic_body &body)
{
    std::memcpy(&body.element_size, &header[element_size_offset], sizeof body.element_size);
    std::memcpy(&body.element_count, &header[element_count_offset], sizeof body.element_count);

    // Elements of no size are never read, however many are promised.
    if (body.element_size == 0 && body.element_count != 0)
        return false;
    if (__builtin_mul_overflow(body.element_count, body.element_size, &body.byte_count) ||
        body.byte_count > body_bytes)
        return false;
    const auto points = static_cast<std::uint32_t>(body.byte_count / sizeof(path_vertex));
    body.vertex_count = static_cast<std::int32_t>(points + 1);
    return true;
}

} // namespace vimbo
