#include "render/preview_picture.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace
{

using vimbo::path_matrix;
using vimbo::preview_matrix;
using vimbo::preview_state;
using vimbo::replayed_vertices;

TEST(PreviewMatrix, ScalesBy64WithTheWholeWindowsAspect)
{
    const path_matrix wide = preview_matrix({}, 1920, 1080);
    EXPECT_FLOAT_EQ(wide.element[0], 64.0F * 1080 / 1920);
    EXPECT_FLOAT_EQ(wide.element[5], 64);
    const path_matrix tall = preview_matrix({}, 500, 1000);
    EXPECT_FLOAT_EQ(tall.element[0], 128);
    EXPECT_FLOAT_EQ(tall.element[5], 64);
}

TEST(PreviewMatrix, TakesZoomAndPan)
{
    preview_state view = {};
    view.zoom = 0.25F;
    view.pan_x = -3;
    view.pan_y = 7;
    const path_matrix matrix = preview_matrix(view, 1000, 1000);
    const float expected[16] = {16, 0, 0, 0, 0, 16, 0, 0, 0, 0, 1, 0, -3, 7, 0, 1};
    for (int i = 0; i < 16; ++i)
        EXPECT_FLOAT_EQ(matrix.element[i], expected[i]) << "element " << i;
}

TEST(ReplayedVertices, RunFromNoneToAll)
{
    EXPECT_EQ(replayed_vertices(1000, 0), 0);
    EXPECT_EQ(replayed_vertices(1000, 1), 3);
    EXPECT_EQ(replayed_vertices(1000, 128), 501);
    EXPECT_EQ(replayed_vertices(1000, 254), 996);
    EXPECT_EQ(replayed_vertices(1000, 255), 1000);
    EXPECT_EQ(replayed_vertices(0, 255), 0);
}

TEST(ReplayedVertices, DoNotOverflowForTheLongestPath)
{
    EXPECT_EQ(replayed_vertices(INT32_MAX, 255), INT32_MAX);
    EXPECT_EQ(replayed_vertices(INT32_MAX, 254), 2139062142);
}

TEST(ReplayedVertices, AreNoneOfAPathThatIsTooLongToCount)
{
    EXPECT_EQ(replayed_vertices(-1, 255), 0);
    EXPECT_EQ(replayed_vertices(INT32_MIN, 255), 0);
}

} // namespace
