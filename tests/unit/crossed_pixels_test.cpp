#include "render/crossed_pixels.hpp"
#include "tests/support/hidden.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{

using vimbo::path_vertex;
using vimbo::pixel_box;

constexpr int width = 12;
constexpr int height = 6;

// A picture of 12 x 6 pixels whose lengths are 256ths of a pixel.
class CrossedPixels : public testing::Test
{
protected:
    CrossedPixels()
    {
        clear_covered(*covered, width, height);
        vimbo::path_matrix matrix = {};
        GLfloat *m = matrix.element;
        m[0] = static_cast<GLfloat>(vimbo::largest_length * 2 / (256.0 * width));
        m[5] = static_cast<GLfloat>(vimbo::largest_length * 2 / (256.0 * height));
        m[12] = -1;
        m[13] = -1;
        project_with(matrix);
    }

    void project_with(const vimbo::path_matrix &matrix)
    {
        target = project(matrix, {0, 0, width, height}, false, 1.0 / 256);
    }

    void cross(const std::vector<std::pair<double, double>> &places)
    {
        std::vector<path_vertex> strip;
        vimbo::path_box box = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
        for (const auto &[x, y] : places) {
            strip.push_back(
                {static_cast<std::int32_t>(x * 256), static_cast<std::int32_t>(y * 256)});
            const path_vertex &at = strip.back();
            box = {std::min(box.left, at.x), std::min(box.bottom, at.y), std::max(box.right, at.x),
                   std::max(box.top, at.y)};
        }
        cover_crossed(*covered, strip, rounding_of(box, target), target);
    }

    // The rows from the top down, `#` where a pixel is covered.
    std::string picture() const
    {
        std::string rows;
        for (int row = height - 1; row >= 0; --row) {
            for (int column = 0; column < width; ++column) {
                const pixel_box centre = {column + 0.5, row + 0.5, column + 0.5, row + 0.5};
                rows += rig::is_hidden(*covered, centre) ? '#' : '.';
            }
            rows += '\n';
        }
        return rows;
    }

    const std::unique_ptr<vimbo::covered_pixels> covered =
        std::make_unique<vimbo::covered_pixels>();
    vimbo::path_projection target = {};
};

constexpr char nothing[] = "............\n"
                           "............\n"
                           "............\n"
                           "............\n"
                           "............\n"
                           "............\n";

TEST_F(CrossedPixels, AreThoseWhoseCentresALineComesNearest)
{
    cross({{0.1, 0.7}, {11.9, 0.7}});
    cross({{0.1, 2.3}, {11.95, 5.65}});
    EXPECT_EQ(picture(), "..........##\n"
                         "......####..\n"
                         "...###......\n"
                         "###.........\n"
                         "............\n"
                         "############\n");
}

TEST_F(CrossedPixels, AreTheSameAlongASteepLine)
{
    cross({{1.3, 0.1}, {1.3, 5.9}});
    cross({{4.3, 5.9}, {7.8, 0.1}});
    EXPECT_EQ(picture(), ".#..#.......\n"
                         ".#...#......\n"
                         ".#...#......\n"
                         ".#....#.....\n"
                         ".#....#.....\n"
                         ".#.....#....\n");
}

TEST_F(CrossedPixels, HaveTheFirstOneOnlyWhereTheLineStartsInItsDiamond)
{
    cross({{2.7, 4.6}, {6.95, 4.6}}); // from within it, past its centre
    cross({{2.95, 2.1}, {6.9, 2.1}}); // from beside it
    EXPECT_EQ(picture(), "............\n"
                         "..#####.....\n"
                         "............\n"
                         "...####.....\n"
                         "............\n"
                         "............\n");
}

TEST_F(CrossedPixels, HaveTheLastOneOnlyWhereTheLineEndsOutsideOfItsDiamond)
{
    cross({{2.2, 4.6}, {6.7, 4.6}});
    cross({{2.1, 2.1}, {6.95, 2.1}});
    cross({{6.8, 0.6}, {2.3, 0.6}});
    EXPECT_EQ(picture(), "............\n"
                         "..####......\n"
                         "............\n"
                         "..#####.....\n"
                         "............\n"
                         "...####.....\n");
}

TEST_F(CrossedPixels, AreLeftOpenWhereRoundingDecides)
{
    cross({{0.1, 2}, {11.9, 2}});                // along an edge
    cross({{0.1, 4 - 1.0 / 256}, {11.9, 4}});    // and closer and closer to one
    cross({{3.5, 1.5}, {3.5, 1.5}});             // nowhere
    cross({{3.5, 1.5 - 1.0 / 256}, {0.0, 1.2}}); // from where drivers differ
    EXPECT_EQ(picture(), "............\n"
                         "............\n"
                         "#####.......\n"
                         "............\n"
                         "###.........\n"
                         "............\n");
}

// Rounding along both axes may move an end by twice as much across a diamond's edge.
TEST_F(CrossedPixels, AreLeftOpenWhereAnEndIsRoundedAlongBothAxes)
{
    cross({{2.25, 1.75 - 1.0 / 256}, {6.9, 1.7}}); // starts just within a diamond,
    cross({{2.25, 3.75 + 1.0 / 256}, {6.9, 3.7}}); // or just outside of one,
    cross({{6.9, 5.7}, {2.75, 5.75 + 1.0 / 256}}); // ends just outside of one,
    cross({{9.4, 1.4}, {9.75, 1.75 + 1.0 / 256}}); // or of that in which it starts
    EXPECT_EQ(picture(), "...####.....\n"
                         "............\n"
                         "...####.....\n"
                         "............\n"
                         "...####.....\n"
                         "............\n");
}

TEST_F(CrossedPixels, AreThoseWithinThePictureOfLinesThatGoBeyond)
{
    cross({{-40, 3.3}, {60, 3.3}});
    cross({{5.3, 50}, {5.3, -50}});
    cross({{-9, 0.4}, {-1, 0.4}});
    cross({{3, 9}, {20, 7}});
    EXPECT_EQ(picture(), ".....#......\n"
                         ".....#......\n"
                         "############\n"
                         ".....#......\n"
                         ".....#......\n"
                         ".....#......\n");
}

TEST_F(CrossedPixels, FollowAStripOfLines)
{
    cross({{1.1, 1.2}, {8.9, 1.2}, {8.9, 4.8}, {1.1, 4.8}});
    EXPECT_EQ(picture(), "............\n"
                         ".########...\n"
                         "........#...\n"
                         "........#...\n"
                         ".########...\n"
                         "............\n");
}

TEST_F(CrossedPixels, AreUnknownWhereTheViewHasNoNumbersOrIsTooNear)
{
    const path_vertex far[] = {{INT32_MIN, 700}, {INT32_MAX, 700}};
    const vimbo::path_box whole = {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
    cover_crossed(*covered, far, rounding_of(whole, target), target);
    EXPECT_EQ(picture(), nothing) << "a line over millions of pixels";
    const vimbo::path_matrix before = target.matrix;
    for (const float value :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        for (const int element : {0, 5, 12, 13}) {
            vimbo::path_matrix matrix = before;
            matrix.element[element] = value;
            project_with(matrix);
            cross({{0.1, 0.7}, {11.9, 0.7}});
            EXPECT_EQ(picture(), nothing) << value << " in element " << element;
        }
    }
}

} // namespace
