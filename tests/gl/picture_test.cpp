// Pictures, drawn off screen and compared with what the test works out itself.
#include "mosaic/load_mosaic.hpp"
#include "render/path_program.hpp"
#include "render/preview_picture.hpp"
#include "render/tray_outline.hpp"
#include "tests/gl/gl_rig.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace
{

using namespace rig;
using vimbo::path_vertex;

constexpr double largest = 2147483647;

// The length that the matrix puts `ndc` from the centre.
std::int32_t length_at(double ndc, double scale)
{
    return static_cast<std::int32_t>(std::lround(ndc / scale * largest));
}

path_vertex vertex(std::int32_t x, std::int32_t y, bool is_mark)
{
    return {x, (y & ~1) | (is_mark ? 1 : 0)};
}

class Picture : public testing::Test
{
protected:
    Picture() : program(vimbo::build_path_program())
    {
        frame.window_width = 400;
        frame.window_height = 300;
        preview.rectangle = nk_rect(0, 0, 400, 300);
    }

    ~Picture() override
    {
        std::snprintf(mosaic.mosaic_path, sizeof mosaic.mosaic_path, "/no/such/file");
        vimbo::load_mosaic(mosaic);
        glDeleteProgram(program);
    }

    void load(const std::vector<path_vertex> &points)
    {
        write_file(place.file("0.mmv"), mosaic_bytes(points));
        std::snprintf(mosaic.mosaic_path, sizeof mosaic.mosaic_path, "%s",
                      place.file("0.mmv").c_str());
        vimbo::load_mosaic(mosaic);
        ASSERT_EQ(mosaic.mosaic_vertex_count, static_cast<std::int32_t>(points.size()) + 1);
    }

    void draw()
    {
        vimbo::draw_preview_directly(frame, preview, {program, mosaic, {}});
    }

    // The point that appears in the middle of this pixel of the whole window.
    path_vertex at_pixel(int x, int y, bool is_mark) const
    {
        const double scale_y = 64.0 * preview.zoom;
        const double scale_x = scale_y * frame.window_height / frame.window_width;
        const double ndc_x = (2 * (x + 0.5) / frame.window_width) - 1 - preview.pan_x;
        const double ndc_y = (2 * (y + 0.5) / frame.window_height) - 1 - preview.pan_y;
        return vertex(length_at(ndc_x, scale_x), length_at(ndc_y, scale_y), is_mark);
    }

    const scratch_directory place;
    const GLuint program;
    vimbo::frame_state frame = {};
    vimbo::preview_state preview = {};
    vimbo::mosaic_state mosaic = {};
};

TEST_F(Picture, ColoursEachMoveByTheRecordItEndsAt)
{
    // A jump to the start, then a mark, a jump and a mark around a square.
    load({at_pixel(50, 50, false), at_pixel(350, 50, true), at_pixel(350, 250, false),
          at_pixel(50, 250, true)});
    const canvas paper(400, 300);
    draw();
    EXPECT_TRUE(alike(paper.at(200, 50), mark)) << "the move to the right is a mark";
    EXPECT_TRUE(alike(paper.at(350, 150), jump)) << "the move upward is a jump";
    EXPECT_TRUE(alike(paper.at(200, 250), mark)) << "the move to the left is a mark";
    EXPECT_TRUE(alike(paper.at(50, 150), background)) << "the path is not closed";
    EXPECT_TRUE(alike(paper.at(1, 1), background));
}

TEST_F(Picture, JumpsFromTheCentreToTheFirstPoint)
{
    load({at_pixel(300, 150, false)});
    const canvas paper(400, 300);
    draw();
    EXPECT_NEAR(paper.count(jump), 100, 2);
    EXPECT_EQ(paper.count(mark), 0);
    EXPECT_EQ(paper.count(jump) + paper.count(background), 400 * 300);
}

TEST_F(Picture, MarksTheFirstMoveWhenItsRecordIsAMark)
{
    load({at_pixel(300, 150, true)});
    const canvas paper(400, 300);
    draw();
    EXPECT_NEAR(paper.count(mark), 100, 2);
    EXPECT_EQ(paper.count(jump), 0);
}

TEST_F(Picture, DrawsEveryOddYAsAMarkNegativeOnesIncluded)
{
    load({vertex(0, 0, false), {-10000000, -1}, {-10000000, -2}});
    const canvas paper(400, 300);
    draw();
    EXPECT_GT(paper.count(mark), 10);
}

TEST_F(Picture, ReplaysThePathInItsDrawingOrder)
{
    // 255 moves upward, a pixel each: so many as the replay has steps.
    std::vector<path_vertex> points;
    for (int i = 1; i < 255; ++i)
        points.push_back(at_pixel(200, 20 + i, true));
    points.insert(points.begin(), at_pixel(200, 20, false));
    load(points);
    for (const std::size_t position : {0, 1, 2, 100, 200, 254, 255}) {
        preview.replay_position = position;
        const canvas paper(400, 300);
        draw();
        // Vertices shown, less the centre and the first point.
        const int shown = static_cast<int>(256 * position / 255);
        EXPECT_NEAR(paper.count(mark), std::max(0, shown - 2), 2) << "position " << position;
        const int top = 20 + shown - 2;
        if (shown > 20) {
            EXPECT_TRUE(alike(paper.at(200, top - 3), mark)) << "position " << position;
            EXPECT_FALSE(alike(paper.at(200, top + 3), mark)) << "position " << position;
        }
    }
}

TEST_F(Picture, ShowsOnlyTheBackgroundForNoElements)
{
    load({});
    const canvas paper(400, 300);
    draw();
    EXPECT_EQ(paper.count(background), 400 * 300);
}

TEST_F(Picture, MapsPointsByTheWholeWindowsShape)
{
    const std::pair<int, int> shapes[] = {{400, 300}, {800, 200}, {200, 800}, {500, 500}};
    for (const auto &[width, height] : shapes) {
        frame.window_width = width;
        frame.window_height = height;
        preview.rectangle = nk_rect(0, 0, static_cast<float>(width), static_cast<float>(height));
        const int y = height / 4;
        load({at_pixel(width / 4, y, false), at_pixel(width * 3 / 4, y, true)});
        const canvas paper(width, height);
        draw();
        const int half = width / 2;
        EXPECT_NEAR(paper.count(mark), half, 2) << width << " x " << height;
        EXPECT_TRUE(alike(paper.at(width / 2, y), mark)) << width << " x " << height;
    }
}

TEST_F(Picture, ShowsMillimetresByTheWindowsHeight)
{
    // 60 mm of the 262.144 mm that the height shows, to the right and upward.
    const std::int32_t length = 60 * vimbo::length_units_per_mm;
    // Of odd width: its centre is a pixel's.
    frame.window_width = 301;
    preview.rectangle = nk_rect(0, 0, 301, 300);
    load({vertex(length, 0, true)});
    canvas paper(301, 300);
    draw();
    EXPECT_NEAR(paper.count(mark), 300 * 60 / 262.144, 1.5);
    load({vertex(0, length, true)});
    draw();
    EXPECT_NEAR(paper.count(mark), 300 * 60 / 262.144, 1.5);
    EXPECT_TRUE(alike(paper.at(150, 170), mark)) << "y goes upward";
}

TEST_F(Picture, ZoomsAndPans)
{
    preview.zoom = 4;
    preview.pan_x = 0.5F;
    preview.pan_y = -0.25F;
    load({at_pixel(100, 50, false), at_pixel(300, 50, true)});
    const canvas paper(400, 300);
    draw();
    EXPECT_NEAR(paper.count(mark), 200, 2);
    EXPECT_TRUE(alike(paper.at(200, 50), mark));
}

TEST_F(Picture, StaysInItsRectangle)
{
    frame.window_height = 300;
    preview.rectangle = nk_rect(100, 40, 120, 80); // from the top left
    // A long mark across all of the window.
    load({vertex(-2000000000, 0, false), vertex(2000000000, 0, true)});
    const canvas paper(400, 300);
    draw();
    EXPECT_EQ(paper.count(untouched), 400 * 300 - 120 * 80);
    EXPECT_TRUE(alike(paper.at(100, 180), background)) << "bottom left";
    EXPECT_TRUE(alike(paper.at(219, 259), background)) << "top right";
    EXPECT_TRUE(alike(paper.at(99, 220), untouched));
    EXPECT_TRUE(alike(paper.at(160, 179), untouched));
    EXPECT_TRUE(alike(paper.at(160, 260), untouched));
    EXPECT_NEAR(paper.count(mark), 120, 1) << "the centre lies in the rectangle's middle";
    EXPECT_EQ(glIsEnabled(GL_SCISSOR_TEST), GL_FALSE) << "the next frame would be cut";
}

TEST_F(Picture, IsTheSameWhateverGlStateTheInterfaceLeft)
{
    load({at_pixel(50, 50, false), at_pixel(350, 50, true)});
    glEnable(GL_BLEND);
    glBlendFunc(GL_ZERO, GL_ONE);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
    const canvas paper(400, 300);
    draw();
    EXPECT_NEAR(paper.count(mark), 300, 2);
    EXPECT_EQ(paper.count(untouched), 0);
    glDisable(GL_BLEND);
}

TEST_F(Picture, DrawsTheTrayOverThePathsAndAtReplayZeroToo)
{
    const vimbo::path_buffer tray = vimbo::build_tray_outline(25600000, 25600000, 0);
    // A mark along the tray's upper edge.
    load({{-12800000, 12800000}, {12800000, 12800001}});
    for (const std::size_t position : {0, 255}) {
        preview.replay_position = position;
        const canvas paper(400, 300);
        vimbo::draw_preview_directly(frame, preview, {program, mosaic, tray});
        const double side = 100 * 300 / 262.144;
        EXPECT_NEAR(paper.count(outline), 4 * side, 8) << "position " << position;
        EXPECT_LE(paper.count(mark), 3) << "the tray lies over the paths";
    }
    glDeleteVertexArrays(1, &tray.vertex_array);
    glDeleteBuffers(1, &tray.buffer);
}

TEST_F(Picture, ShowsOnlyTheBackgroundWithoutAShaderProgram)
{
    load({at_pixel(50, 50, false), at_pixel(350, 50, true)});
    const canvas paper(400, 300);
    vimbo::draw_preview_directly(frame, preview, {0, mosaic, {}});
    EXPECT_EQ(paper.count(background), 400 * 300);
}

TEST_F(Picture, TouchesNoPixelWhenItHasNoSize)
{
    load({at_pixel(50, 50, false), at_pixel(350, 50, true)});
    const canvas paper(400, 300);
    for (const struct nk_rect area :
         {nk_rect(10, 10, 0, 50), nk_rect(10, 10, 50, 0), nk_rect(10, 10, -5, -5)}) {
        preview.rectangle = area;
        draw();
    }
    EXPECT_EQ(paper.count(untouched), 400 * 300);
}

TEST_F(Picture, DrawsNoMoreVerticesThanThePathCounts)
{
    load({at_pixel(100, 100, false), at_pixel(300, 100, true), at_pixel(300, 200, true)});
    const vimbo::path_matrix matrix = vimbo::preview_matrix(preview, 400, 300);
    const auto drawn = [&](GLuint with, GLuint array, std::int32_t count) {
        const canvas paper(400, 300);
        vimbo::draw_path_buffer(with, matrix, array, count, vimbo::mosaic_colours);
        return paper.count(mark);
    };
    EXPECT_NEAR(drawn(program, mosaic.mosaic_vao, 4), 300, 3);
    EXPECT_NEAR(drawn(program, mosaic.mosaic_vao, 3), 200, 3);
    EXPECT_EQ(drawn(program, mosaic.mosaic_vao, 2), 0);
    EXPECT_EQ(drawn(program, mosaic.mosaic_vao, 0), 0);
    EXPECT_EQ(drawn(program, mosaic.mosaic_vao, -1), 0);
    EXPECT_EQ(drawn(0, mosaic.mosaic_vao, 4), 0);
    EXPECT_EQ(drawn(program, 0, 4), 0);
}

} // namespace
