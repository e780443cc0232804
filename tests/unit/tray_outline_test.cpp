#include "render/tray_outline.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace
{

using vimbo::path_vertex;

using outline = std::array<path_vertex, vimbo::tray_outline_vertices>;

outline outline_of(std::int32_t width, std::int32_t height, std::int32_t radius)
{
    outline vertices = {};
    vimbo::compute_tray_outline({width, height, radius}, vertices);
    return vertices;
}

void expect_vertex(const path_vertex &vertex, std::int32_t x, std::int32_t y)
{
    EXPECT_EQ(vertex.x, x);
    EXPECT_EQ(vertex.y, y);
}

TEST(TrayOutline, HasItsStraightEdgesOutsideByTheRadius)
{
    const outline vertices = outline_of(25600000, 20000000, 2560000);
    expect_vertex(vertices[0], 15360000, 10000000);
    expect_vertex(vertices[16], 12800000, 12560000);
    expect_vertex(vertices[17], -12800000, 12560000);
    expect_vertex(vertices[34], -15360000, -10000000);
    expect_vertex(vertices[51], 12800000, -12560000);
    expect_vertex(vertices[68], 15360000, 10000000);
}

TEST(TrayOutline, RunsItsArcsInSixteenSteps)
{
    const outline vertices = outline_of(25600000, 25600000, 2560000);
    const double angle = 5 * std::numbers::pi / 32;
    const auto c = static_cast<std::int32_t>(2560000 * std::cos(angle));
    const auto s = static_cast<std::int32_t>(2560000 * std::sin(angle));
    expect_vertex(vertices[5], 12800000 + c, (12800000 + s) & ~1);
    expect_vertex(vertices[22], -12800000 - s, (12800000 + c) & ~1);
    expect_vertex(vertices[39], -12800000 - c, (-12800000 - s) & ~1);
    expect_vertex(vertices[56], 12800000 + s, (-12800000 - c) & ~1);
}

TEST(TrayOutline, HasFlagZeroThroughout)
{
    for (const path_vertex &vertex : outline_of(12345677, 7654321, 999983))
        EXPECT_EQ(vertex.y & 1, 0);
}

TEST(TrayOutline, OfRadiusZeroIsARectangle)
{
    const outline vertices = outline_of(100, 200, 0);
    for (std::size_t k = 0; k < vimbo::vertices_per_corner; ++k) {
        expect_vertex(vertices[k], 50, 100);
        expect_vertex(vertices[k + 17], -50, 100);
        expect_vertex(vertices[k + 34], -50, -100);
        expect_vertex(vertices[k + 51], 50, -100);
    }
}

TEST(TrayOutline, HalvesOddSizesTowardZero)
{
    expect_vertex(outline_of(5, 9, 0)[0], 2, 4);
    expect_vertex(outline_of(-5, -9, 0)[0], -2, -4);
}

TEST(TrayOutline, WrapsAroundBeyond32Bits)
{
    const outline vertices = outline_of(INT32_MAX, INT32_MAX, INT32_MAX);
    expect_vertex(vertices[0], static_cast<std::int32_t>(1073741823U + 2147483647U), 1073741822);
}

} // namespace
