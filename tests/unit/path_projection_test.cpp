#include "render/path_projection.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace
{

using vimbo::path_box;
using vimbo::path_projection;
using vimbo::pixel_box;

path_projection projection_of(float zoom, float pan_x, float pan_y, bool upside_down = false,
                              double grid = 0)
{
    vimbo::path_matrix matrix = {};
    matrix.element[0] = 64 * zoom * 0.75F;
    matrix.element[5] = 64 * zoom;
    matrix.element[12] = pan_x;
    matrix.element[13] = pan_y;
    return project(matrix, {17, 23, 757, 500}, upside_down, grid);
}

TEST(PathProjection, PutsThePathsCentreIntoTheAreasMiddle)
{
    const pixel_box centre = pixels_of(path_box{0, 0, 0, 0}, projection_of(1, 0, 0));
    EXPECT_NEAR(centre.left, 378.5, 0.01);
    EXPECT_NEAR(centre.right, 378.5, 0.01);
    EXPECT_NEAR(centre.bottom, 250, 0.01);
    const path_box above = {0, 10000000, 0, 10000000};
    EXPECT_GT(pixels_of(above, projection_of(1, 0, 0)).bottom, 300);
    EXPECT_LT(pixels_of(above, projection_of(1, 0, 0, true)).top, 200);
}

// A vertex as the driver places it, in single precision.
float placed(std::int32_t length, float scale, float shift, float half)
{
    const float normalised = std::max(static_cast<float>(length) / 2147483647.0F, -1.0F);
    return (normalised * scale + shift) * half + half;
}

TEST(PathProjection, HoldsItsVerticesAsADriverPlacesThem)
{
    std::mt19937 random(3);
    const auto share = [&] { return static_cast<float>(random() % 2001) / 1000 - 1; };
    for (int i = 0; i < 100000; ++i) {
        const float zoom = std::exp2(static_cast<float>(random() % 21));
        const path_projection projection = projection_of(zoom, share() * zoom, share() * zoom);
        const auto x = static_cast<std::int32_t>(random()) >> (random() % 30);
        const auto y = static_cast<std::int32_t>(random()) >> (random() % 30);
        const pixel_box box = pixels_of(path_box{x, y, x, y}, projection);
        const GLfloat *m = projection.matrix.element;
        const float across = placed(x, m[0], m[12], 757.0F / 2);
        const float up = placed(y, m[5], m[13], 500.0F / 2);
        EXPECT_LE(box.left, across);
        EXPECT_GE(box.right, across);
        EXPECT_LE(box.bottom, up);
        EXPECT_GE(box.top, up);
        EXPECT_LT(box.right - box.left, 0.01 + (std::fabs(across) + zoom * 757) * 1e-5);
    }
}

TEST(PathProjection, HoldsItsVerticesAsADriverRoundsThem)
{
    const pixel_box before = pixels_of(path_box{0, 0, 0, 0}, projection_of(1, 0, 0));
    const path_projection projection = projection_of(1, 0, 0, false, 1.0 / 16);
    const pixel_box box = pixels_of(path_box{0, 0, 0, 0}, projection);
    EXPECT_NEAR(before.left - box.left, 0.6 / 16, 1e-9);
    EXPECT_NEAR(before.bottom - box.bottom, 0.6 / 16, 1e-9);
    EXPECT_NEAR(box.right - before.right, 0.6 / 16, 1e-9);
    EXPECT_NEAR(box.top - before.top, 0.6 / 16, 1e-9);
    EXPECT_NEAR(rounding_of(path_box{0, 0, 0, 0}, projection), 378.5 - box.left, 1e-9);
}

TEST(PathProjection, TellsHowFarADriversPrecisionMayBeOff)
{
    constexpr double grid = 1.0 / 256;
    constexpr double precision = 1.0 / (1 << 20);
    constexpr double last_sum = 1.0 / (1 << 23);
    constexpr std::int32_t far = 40000000;
    const path_projection projection = projection_of(2, 0.5F, -0.25F, false, grid);
    const GLfloat *m = projection.matrix.element;
    const auto off = [&](double scale, double shift, double half, double end, double length) {
        return (length * scale / 2147483647 + std::fabs(shift)) * half * precision +
               end * last_sum + 0.6 * grid;
    };
    for (const std::int32_t length : {0, far, -far}) {
        const pixel_box box = pixels_of(path_box{length, length, length, length}, projection);
        const double x = off(m[0], 0.5, 378.5, 17 + 757, std::fabs(length));
        const double y = off(m[5], -0.25, 250, 23 + 500, std::fabs(length));
        EXPECT_NEAR((box.right - box.left) / 2, x, 1e-9) << length;
        EXPECT_NEAR((box.top - box.bottom) / 2, y, 1e-9) << length;
        EXPECT_NEAR(rounding_of(path_box{length, length, length, length}, projection),
                    std::max(x, y), 1e-9);
    }
    // Of a box, the vertex that is farther away from the path's centre decides.
    for (const path_box &box : {path_box{-far, 0, 5, 0}, {-5, 0, far, 0}})
        EXPECT_NEAR(rounding_of(box, projection), off(m[0], 0.5, 378.5, 17 + 757, far), 1e-9);
}

TEST(PathProjection, LeavesOutOnlyWhatNoLineOfCanBeSeen)
{
    std::mt19937 random(4);
    const auto share = [&] { return static_cast<float>(random() % 2001) / 1000 - 1; };
    auto covered = std::make_unique<vimbo::covered_pixels>();
    clear_covered(*covered, 757, 500);
    int left_out = 0;
    for (int i = 0; i < 100000; ++i) {
        const float zoom = std::exp2(static_cast<float>(random() % 21));
        const path_projection projection =
            projection_of(zoom, share() * zoom, share() * zoom, i % 2 == 0);
        const auto x = static_cast<std::int32_t>(random()) >> (random() % 30);
        const auto y = static_cast<std::int32_t>(random()) >> (random() % 30);
        const path_box box = {x, y, x + 100, y + 1000};
        if (!are_apart(box, lengths_in(projection)))
            continue;
        ++left_out;
        const vimbo::pixel_range range = range_of(*covered, pixels_of(box, projection));
        EXPECT_LT(range.right, range.left);
    }
    EXPECT_GT(left_out, 10000);
}

// The view's edge along an axis, as a length, or where all lengths end.
double edge_of(double scale, double shift, double edge)
{
    return std::clamp((edge - shift) / scale * 2147483647, double{INT32_MIN}, double{INT32_MAX});
}

TEST(PathProjection, LeavesOutNothingUpToTheViewsEdgesAndLittleOnlyBeyond)
{
    std::mt19937 random(5);
    const auto share = [&] { return static_cast<float>(random() % 2001) / 1000 - 1; };
    for (int i = 0; i < 10000; ++i) {
        const float reach = i % 3 == 0 ? 200 : 10; // the view may lie beyond all lengths
        const float zoom = std::exp2(static_cast<float>(random() % 21));
        const path_projection projection =
            projection_of(zoom, share() * reach * zoom, share() * reach * zoom, i % 2 == 0);
        const GLfloat *m = projection.matrix.element;
        const path_box seen = lengths_in(projection);
        // Two pixels, and what single precision may be off by.
        const double beyond_x = 1 + 4.0 / 757 + (1 + std::fabs(m[12])) * 1.91e-6;
        const double beyond_y = 1 + 4.0 / 500 + (1 + std::fabs(m[13])) * 1.91e-6;
        EXPECT_LE(seen.left, edge_of(m[0], m[12], -1));
        EXPECT_GE(seen.right, edge_of(m[0], m[12], 1));
        EXPECT_LE(seen.bottom, edge_of(m[5], m[13], -1));
        EXPECT_GE(seen.top, edge_of(m[5], m[13], 1));
        EXPECT_GE(seen.left, edge_of(m[0], m[12], -beyond_x) - 2);
        EXPECT_LE(seen.right, edge_of(m[0], m[12], beyond_x) + 2);
        EXPECT_GE(seen.bottom, edge_of(m[5], m[13], -beyond_y) - 2);
        EXPECT_LE(seen.top, edge_of(m[5], m[13], beyond_y) + 2);
    }
}

TEST(PathProjection, LeavesOutWhatLiesBesideTheViewOnEachSide)
{
    constexpr std::int32_t far_out = 1000000000;
    for (const bool upside_down : {false, true}) {
        const path_box seen = lengths_in(projection_of(4, 0, 0, upside_down));
        EXPECT_FALSE(are_apart({0, 0, 0, 0}, seen));
        EXPECT_TRUE(are_apart({-far_out, 0, -far_out, 0}, seen)) << "on the left";
        EXPECT_TRUE(are_apart({far_out, 0, far_out, 0}, seen)) << "on the right";
        EXPECT_TRUE(are_apart({0, -far_out, 0, -far_out}, seen)) << "below";
        EXPECT_TRUE(are_apart({0, far_out, 0, far_out}, seen)) << "above";
    }
}

TEST(PathProjection, LeavesNothingOutOfAViewWithoutNumbers)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const path_box corner = {INT32_MIN, INT32_MAX, INT32_MIN, INT32_MAX};
    for (const float beyond : {infinity, -infinity, nan}) {
        EXPECT_FALSE(are_apart(corner, lengths_in(projection_of(beyond, 0, 0))));
        EXPECT_FALSE(are_apart(corner, lengths_in(projection_of(1e-9F, beyond, beyond))));
        EXPECT_TRUE(std::isnan(pixels_of(corner, projection_of(beyond, 0, 0)).left));
        EXPECT_TRUE(std::isnan(pixels_of(corner, projection_of(1, 0, beyond)).top));
    }
    EXPECT_FALSE(are_apart(corner, lengths_in(projection_of(0, 0, 0))));
}

} // namespace
