// Mosaics of any size, to measure with.
#pragma once

#include <cstdint>
#include <filesystem>

namespace bench
{

enum class mosaic_kind {
    hatch,  // long parallel lines, a jump between each two
    spiral, // one line of short moves, outward
    scatter // jumps and marks from anywhere to anywhere within a small distance
};

/// Writes a mosaic of `points` moves within the default tray.
void write_big_mosaic(const std::filesystem::path &path, mosaic_kind kind, std::uint64_t points);

} // namespace bench
