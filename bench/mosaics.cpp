#include "bench/mosaics.hpp"

#include "mosaic/mosaic_file.hpp"
#include "mosaic/path_vertex.hpp"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <numbers>
#include <random>
#include <stdexcept>
#include <vector>

namespace bench
{

namespace
{

using vimbo::length_unit;
using vimbo::path_vertex;

constexpr double half_tray = 45.0 * vimbo::length_units_per_mm;

path_vertex move_to(double x, double y, bool mark)
{
    return {static_cast<length_unit>(x), (static_cast<length_unit>(y) & ~1) | (mark ? 1 : 0)};
}

path_vertex hatch_point(std::uint64_t i, std::uint64_t points)
{
    const std::uint64_t line = i / 2;
    const double y =
        -half_tray + 2 * half_tray * static_cast<double>(i) / static_cast<double>(points);
    const bool end = i % 2 == 1;
    const bool right = end != (line % 2 == 1);
    return move_to(right ? half_tray : -half_tray, y, end);
}

path_vertex short_hatch_point(std::uint64_t i, std::uint64_t points)
{
    constexpr double columns = 90;
    const double along = columns * static_cast<double>(i) / static_cast<double>(points);
    const double column = std::floor(along);
    const double left = -half_tray + column * vimbo::length_units_per_mm;
    const double y = -half_tray + 2 * half_tray * (along - column);
    const bool end = i % 2 == 1;
    const bool right = end != (i / 2 % 2 == 1);
    return move_to(right ? left + vimbo::length_units_per_mm : left, y, end);
}

path_vertex spiral_point(std::uint64_t i, std::uint64_t points)
{
    const double share = static_cast<double>(i) / static_cast<double>(points);
    const double turns = std::sqrt(static_cast<double>(points)) / 4;
    const double angle = 2 * std::numbers::pi * turns * share;
    return move_to(half_tray * share * std::cos(angle), half_tray * share * std::sin(angle), i > 0);
}

path_vertex scattered_point(std::mt19937_64 &random, path_vertex &last)
{
    const auto step = [&](length_unit from) {
        constexpr double reach = 1.0 * vimbo::length_units_per_mm;
        const double share = static_cast<double>(random() >> 11) * 0x1.0p-53;
        const double to = from + (2 * share - 1) * reach;
        return std::fabs(to) > half_tray ? -0.5 * to : to;
    };
    last = move_to(step(last.x), step(last.y), (random() & 3U) != 0);
    return last;
}

} // namespace

mosaic_kind kind_named(std::string_view name)
{
    if (name == "hatch")
        return mosaic_kind::hatch;
    if (name == "short-hatch")
        return mosaic_kind::short_hatch;
    return name == "spiral" ? mosaic_kind::spiral : mosaic_kind::scatter;
}

void write_big_mosaic(const std::filesystem::path &path, mosaic_kind kind, std::uint64_t points)
{
    std::filesystem::create_directories(path.parent_path());
    const std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
    std::array<unsigned char, vimbo::mosaic_header_size> header = {};
    const std::uint32_t element_size = sizeof(path_vertex);
    std::memcpy(&header[vimbo::element_size_offset], &element_size, sizeof element_size);
    std::memcpy(&header[vimbo::element_count_offset], &points, sizeof points);
    std::fwrite(header.data(), header.size(), 1, file.get());

    std::mt19937_64 random(1);
    path_vertex last = {0, 0};
    std::vector<path_vertex> block;
    block.reserve(std::size_t{1} << 16);
    for (std::uint64_t i = 0; i < points; ++i) {
        block.push_back(kind == mosaic_kind::hatch         ? hatch_point(i, points)
                        : kind == mosaic_kind::short_hatch ? short_hatch_point(i, points)
                        : kind == mosaic_kind::spiral      ? spiral_point(i, points)
                                                           : scattered_point(random, last));
        if (block.size() == block.capacity() || i + 1 == points) {
            if (std::fwrite(block.data(), sizeof(path_vertex), block.size(), file.get()) !=
                block.size())
                throw std::runtime_error("cannot write " + path.string());
            block.clear();
        }
    }
}

} // namespace bench
