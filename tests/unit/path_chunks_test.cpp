#include "render/path_chunks.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

using vimbo::path_box;
using vimbo::path_chunks;
using vimbo::path_vertex;

vimbo::mosaic_state mosaic_of(std::int32_t vertices, std::uint32_t generation = 1)
{
    vimbo::mosaic_state mosaic = {};
    mosaic.mosaic_vertex_count = vertices;
    mosaic.mosaic_generation = generation;
    return mosaic;
}

std::vector<path_vertex> random_vertices(std::size_t count)
{
    std::mt19937 random(static_cast<std::mt19937::result_type>(count));
    std::vector<path_vertex> vertices(count);
    for (path_vertex &vertex : vertices)
        vertex = {static_cast<std::int32_t>(random()), static_cast<std::int32_t>(random())};
    return vertices;
}

// The box of the segments that end at the vertices `first` to `end`.
path_box expected_box(const std::vector<path_vertex> &vertices, std::size_t first, std::size_t end)
{
    const std::size_t from = first == 0 ? 0 : first - 1;
    path_box box = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (std::size_t i = from; i < std::min(end, vertices.size()); ++i)
        box = {std::min(box.left, vertices[i].x), std::min(box.bottom, vertices[i].y),
               std::max(box.right, vertices[i].x), std::max(box.top, vertices[i].y)};
    return box;
}

// At most so much larger as single precision may be off by.
void expect_edge(std::int32_t edge, std::int32_t wanted, int direction, const std::string &whose)
{
    const double larger = direction * (static_cast<double>(edge) - wanted);
    EXPECT_GE(larger, 0) << whose;
    EXPECT_LE(larger, std::fabs(static_cast<double>(wanted)) / (1 << 22)) << whose;
}

void expect_box(const path_box &box, const path_box &wanted, const std::string &whose)
{
    expect_edge(box.left, wanted.left, -1, "left of " + whose);
    expect_edge(box.bottom, wanted.bottom, -1, "bottom of " + whose);
    expect_edge(box.right, wanted.right, 1, "right of " + whose);
    expect_edge(box.top, wanted.top, 1, "top of " + whose);
}

void expect_boxes(const path_chunks &chunks, const std::vector<path_vertex> &vertices)
{
    const auto size = static_cast<std::size_t>(chunks.chunk_vertices);
    for (std::size_t chunk = 0; chunk * size < vertices.size(); ++chunk)
        expect_box(chunks.boxes[chunk], expected_box(vertices, chunk * size, (chunk + 1) * size),
                   "chunk " + std::to_string(chunk));
    const std::size_t group_size = size * vimbo::group_chunks;
    for (std::size_t group = 0; group * group_size < vertices.size(); ++group)
        expect_box(chunks.group_boxes[group],
                   expected_box(vertices, group * group_size, (group + 1) * group_size),
                   "group " + std::to_string(group));
}

TEST(PathChunks, HoldTheirSegmentsWhateverStretchesTheyAreReadIn)
{
    for (const std::size_t count : {1, 2, 15, 16, 17, 1000, 4096}) {
        const std::vector<path_vertex> vertices = random_vertices(count);
        for (const std::size_t stretch : {1, 3, 16, 37, 5000}) {
            const auto chunks = std::make_unique<path_chunks>();
            const vimbo::mosaic_state mosaic = mosaic_of(static_cast<std::int32_t>(count));
            fit_chunks(*chunks, mosaic);
            for (std::size_t at = 0; at < count; at += stretch) {
                EXPECT_FALSE(are_boxed(*chunks, mosaic));
                box_vertices(*chunks,
                             std::span(vertices).subspan(at, std::min(stretch, count - at)));
            }
            EXPECT_TRUE(are_boxed(*chunks, mosaic));
            expect_boxes(*chunks, vertices);
        }
    }
}

TEST(PathChunks, HaveExactBoxesOfLengthsUpToTwentyFourBits)
{
    const auto chunks = std::make_unique<path_chunks>();
    const vimbo::mosaic_state mosaic = mosaic_of(5);
    fit_chunks(*chunks, mosaic);
    const path_vertex vertices[] = {{0, 0}, {8388607, -3}, {-8388607, 5}, {7, 8388606}, {1, -1}};
    box_vertices(*chunks, vertices);
    EXPECT_EQ(chunks->boxes[0].left, -8388607);
    EXPECT_EQ(chunks->boxes[0].bottom, -3);
    EXPECT_EQ(chunks->boxes[0].right, 8388607);
    EXPECT_EQ(chunks->boxes[0].top, 8388606);
}

TEST(PathChunks, FitIntoTheSameMemoryWhateverThePathsLength)
{
    const auto chunks = std::make_unique<path_chunks>();
    for (const std::int32_t count : {1, 100, 8388608, 8388609, 100000000, INT32_MAX}) {
        fit_chunks(*chunks, mosaic_of(count));
        const std::int64_t size = chunks->chunk_vertices;
        EXPECT_GE(size * vimbo::chunk_capacity, count);
        EXPECT_LE(size, vimbo::stretch_vertices) << count;
        EXPECT_TRUE(size == 16 || size / 2 * vimbo::chunk_capacity < count)
            << "no longer than they have to be";
    }
}

TEST(PathChunks, LoseTheirBoxesWithTheirMosaicAlone)
{
    const auto chunks = std::make_unique<path_chunks>();
    const vimbo::mosaic_state mosaic = mosaic_of(3);
    const std::vector<path_vertex> vertices = random_vertices(3);
    fit_chunks(*chunks, mosaic);
    box_vertices(*chunks, vertices);
    fit_chunks(*chunks, mosaic);
    EXPECT_TRUE(are_boxed(*chunks, mosaic));
    for (const vimbo::mosaic_state &other : {mosaic_of(3, 2), mosaic_of(2, 1)}) {
        EXPECT_FALSE(are_boxed(*chunks, other));
        fit_chunks(*chunks, other);
        EXPECT_FALSE(are_boxed(*chunks, other));
        fit_chunks(*chunks, mosaic);
        box_vertices(*chunks, vertices);
    }
}

} // namespace
