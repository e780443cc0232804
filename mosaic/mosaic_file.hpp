// The mosaic file: a 32-byte header, then the moves. Little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vimbo
{

inline constexpr std::size_t mosaic_header_size = 32;
/// Where the header has the elements' size in bytes, 32 bits, and their count,
/// 64 bits. Its other bytes are the tool chain's own.
inline constexpr std::size_t element_size_offset = 12;
inline constexpr std::size_t element_count_offset = 16;

/// What a mosaic file's header says of its body.
struct mosaic_body {
    std::uint32_t element_size;
    std::uint64_t element_count;
    std::uint64_t byte_count;  // their product
    std::int32_t vertex_count; // to draw: 8-byte points plus the tray's centre
};

/// Takes the body's measures from a header. False when their product does not
/// fit into 64 bits or is more than the `body_bytes` that the file holds.
bool read_mosaic_header(std::span<const unsigned char, mosaic_header_size> header,
                        std::uint64_t body_bytes, mosaic_body &body);

} // namespace vimbo
