// Mosaics of any size, to measure with.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace bench
{

enum class mosaic_kind {
    hatch,       // long parallel lines, a jump between each two
    short_hatch, // the same of a millimetre, column after column
    spiral,      // one line of short moves, outward
    scatter      // jumps and marks from anywhere to anywhere within a small distance
};

/// The kind of this name, with a hyphen for the underscore; scatter for any other.
mosaic_kind kind_named(std::string_view name);

/// Writes a mosaic of `points` moves within the default tray.
void write_big_mosaic(const std::filesystem::path &path, mosaic_kind kind, std::uint64_t points);

} // namespace bench
