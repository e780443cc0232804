// A path's vertices read back from the buffer, a few at a time.
#include "render/vertex_window.hpp"
#include "tests/gl/preview_rig.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_vertex;

constexpr std::int32_t count = 5000;

class VertexWindow : public preview_rig
{
protected:
    VertexWindow()
    {
        std::vector<path_vertex> points;
        for (std::int32_t i = 1; i < count; ++i)
            points.push_back({i, -2 * i});
        load(points);
    }

    // Vertex i is at i, -2 i: the path starts at the tray's centre.
    static void expect_vertices(std::span<const path_vertex> vertices, std::int32_t first,
                                std::int32_t end)
    {
        ASSERT_EQ(vertices.size(), static_cast<std::size_t>(end - first));
        for (std::int32_t i = first; i < end; ++i) {
            EXPECT_EQ(vertices[static_cast<std::size_t>(i - first)].x, i);
            EXPECT_EQ(vertices[static_cast<std::size_t>(i - first)].y, -2 * i);
        }
    }

    void expect_between(std::int32_t first, std::int32_t end)
    {
        expect_vertices(vertices_between(*window, mosaic, first, end), first, end);
    }

    const std::unique_ptr<vimbo::vertex_window> window = std::make_unique<vimbo::vertex_window>();
};

TEST_F(VertexWindow, HasWhatTheBufferHoldsWhereverItIsAsked)
{
    expect_between(count - 1, count);
    expect_between(3000, 3017);
    expect_between(0, 1);
    expect_between(0, vimbo::window_vertices);
    expect_between(2900, 2917);
    expect_between(2990, 3010);
}

TEST_F(VertexWindow, ReadsFarAheadOnlyWherePathsAreGoneThrough)
{
    expect_between(4000, 4017);
    EXPECT_EQ(window->first, 4000);
    expect_between(3984, 4001);
    EXPECT_EQ(window->first, 4001 - vimbo::window_vertices);
    for (std::int32_t first = 3968; first > 3000; first -= 16)
        expect_between(first, first + 17);
    EXPECT_EQ(window->first, 4001 - vimbo::window_vertices) << "read again what was there";
    expect_between(5, 20);
    EXPECT_EQ(window->first, 5);
}

TEST_F(VertexWindow, GivesTheLastOfMoreThanItHasRoomFor)
{
    const auto vertices = vertices_between(*window, mosaic, 100, 4000);
    expect_vertices(vertices, 4000 - vimbo::window_vertices, 4000);
    expect_between(4000 - 2 * vimbo::window_vertices + 1, 4000 - vimbo::window_vertices + 1);
}

TEST_F(VertexWindow, ReadsAgainOnceItIsForgotten)
{
    expect_between(100, 200);
    load(std::vector<path_vertex>(count - 1, {7, 8}));
    forget_vertices(*window);
    const auto vertices = vertices_between(*window, mosaic, 100, 200);
    EXPECT_TRUE(std::ranges::all_of(
        vertices, [](const path_vertex &vertex) { return vertex.x == 7 && vertex.y == 8; }));
}

} // namespace
