#include "render/tray_outline.hpp"

#include "tests/gl/gl_rig.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>

namespace
{

using namespace rig;
using vimbo::path_vertex;
using vimbo::tray_extent;

std::vector<path_vertex> built(const tray_extent &extent)
{
    const vimbo::path_buffer outline =
        vimbo::build_tray_outline(extent.width, extent.height, extent.corner_radius);
    EXPECT_EQ(outline.vertex_count, 69);
    EXPECT_EQ(glIsVertexArray(outline.vertex_array), GL_TRUE);
    const std::vector<unsigned char> bytes = bytes_of_buffer(outline.buffer);
    EXPECT_EQ(bytes.size(), 552U);
    std::vector<path_vertex> vertices(69);
    std::memcpy(vertices.data(), bytes.data(), bytes.size());
    glDeleteVertexArrays(1, &outline.vertex_array);
    glDeleteBuffers(1, &outline.buffer);
    return vertices;
}

std::int32_t wrapped(double value)
{
    return static_cast<std::int32_t>(static_cast<std::int64_t>(value));
}

// Vertex i by the corner's centre and the angle, counter-clockwise from the right.
path_vertex expected(const tray_extent &extent, std::size_t i)
{
    const std::size_t corner = i / 17 % 4;
    const double angle = static_cast<double>(i % 17) / 16 * std::numbers::pi / 2;
    const double r = extent.corner_radius;
    const double c = r * std::cos(angle);
    const double s = r * std::sin(angle);
    const double x = corner == 0 || corner == 3 ? extent.width / 2 : -(extent.width / 2);
    const double y = corner < 2 ? extent.height / 2 : -(extent.height / 2);
    const double along[4][2] = {{c, s}, {-s, c}, {-c, -s}, {s, -c}};
    return {wrapped(x + along[corner][0]), wrapped(y + along[corner][1]) & ~1};
}

TEST(TrayOutlineBuffer, HoldsTheRoundedRectangleForEveryExtent)
{
    const tray_extent extents[] = {
        {25600000, 25600000, 2560000},
        {30720000, 20480000, 1280000},
        {100, 200, 0},
        {0, 0, 0},
        {5, 9, 3},
        {-256000, 256000, -512000},
        {INT32_MAX, 1000, 1000},
        {12800000, -520093696, -1769996288},
    };
    for (const tray_extent &extent : extents) {
        const std::vector<path_vertex> vertices = built(extent);
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const path_vertex wanted = i == 68 ? expected(extent, 0) : expected(extent, i);
            // The compiler may round the last bit of a product the other way.
            EXPECT_LE(std::abs(static_cast<double>(vertices[i].x) - wanted.x), 1)
                << "x of vertex " << i << ", width " << extent.width;
            EXPECT_LE(std::abs(static_cast<double>(vertices[i].y) - wanted.y), 2)
                << "y of vertex " << i << ", height " << extent.height;
            EXPECT_EQ(vertices[i].y & 1, 0);
        }
    }
}

TEST(TrayOutlineBuffer, KeepsItsNamesWhenTheDriverGrantsNoMemory)
{
    const PFNGLMAPBUFFERPROC map_buffer = __glewMapBuffer;
    __glewMapBuffer = [](GLenum, GLenum) -> void * { return nullptr; };
    const vimbo::path_buffer outline = vimbo::build_tray_outline(100, 100, 10);
    __glewMapBuffer = map_buffer;
    EXPECT_EQ(outline.vertex_count, 69);
    EXPECT_EQ(glIsVertexArray(outline.vertex_array), GL_TRUE);
    EXPECT_EQ(glIsBuffer(outline.buffer), GL_TRUE);
    glDeleteVertexArrays(1, &outline.vertex_array);
    glDeleteBuffers(1, &outline.buffer);
}

} // namespace
