#include "render/path_chunks.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
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

void expect_boxes(const path_chunks &chunks, const std::vector<path_vertex> &vertices)
{
    const auto size = static_cast<std::size_t>(chunks.chunk_vertices);
    for (std::size_t chunk = 0; chunk * size < vertices.size(); ++chunk) {
        const path_box wanted = expected_box(vertices, chunk * size, (chunk + 1) * size);
        const path_box &box = chunks.boxes[chunk];
        EXPECT_EQ(box.left, wanted.left) << "chunk " << chunk;
        EXPECT_EQ(box.bottom, wanted.bottom) << "chunk " << chunk;
        EXPECT_EQ(box.right, wanted.right) << "chunk " << chunk;
        EXPECT_EQ(box.top, wanted.top) << "chunk " << chunk;
    }
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
