// A pass by itself: what it draws and leaves out of paths of which that can be counted.
// No looks at the depths are taken but where a test wants them; what hangs on time is
// left out so.
#include "render/newest_first.hpp"
#include "render/offscreen.hpp"
#include "tests/gl/preview_rig.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_vertex;

constexpr int width = 256;
constexpr int height = 64;
constexpr std::int32_t no_limit = 1 << 30;

// A vertex at a place in pixels, of which a 256th is a length.
path_vertex at(double x, double y)
{
    return {static_cast<std::int32_t>(x * 256), static_cast<std::int32_t>(y * 128) * 2};
}

// In the middle of a pixel: a line from there to there may cover it, and covers nothing for
// certain, so that none of them is ever left out.
const path_vertex spot = at(100.5, 30.5);

// The ends of a short line in a row: there and back, they cover its pixels.
path_vertex row_end(int number)
{
    return number % 2 == 0 ? at(90.25, 10.4) : at(110.95, 10.4);
}

// The same of a line that is looked at by itself.
path_vertex long_row_end(int number)
{
    return number % 2 == 0 ? at(2.25, 10.4) : at(249.95, 10.4);
}

class NewestFirstPass : public preview_rig
{
protected:
    NewestFirstPass()
    {
        vimbo::path_matrix matrix = {};
        matrix.element[0] = static_cast<GLfloat>(vimbo::largest_length * 2 / (256.0 * width));
        matrix.element[5] = static_cast<GLfloat>(vimbo::largest_length * 2 / (256.0 * height));
        matrix.element[12] = matrix.element[13] = -1;
        matrix.element[15] = 1;
        target = project(matrix, {0, 0, width, height}, false, vimbo::driver_grid());
        vimbo::fit_offscreen(picture, width, height);
        pass->looks.look_after = no_limit;
    }

    ~NewestFirstPass() override
    {
        vimbo::delete_offscreen(picture);
    }

    // A path of so many vertices, the i-th of them as told, but the first, which is the
    // tray's centre; in chunks of that length.
    template <typename Vertex>
    void make_path(std::int32_t count, std::int32_t chunk_vertices, Vertex vertex)
    {
        std::vector<path_vertex> points;
        for (std::int32_t i = 1; i < count; ++i)
            points.push_back(vertex(i));
        load(points);
        fit_chunks(*chunks, mosaic);
        chunks->chunk_vertices = chunk_vertices;
        while (!are_boxed(*chunks, mosaic))
            box_stretch(*chunks, mosaic);
    }

    void begin(std::int32_t first = 0)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
        vimbo::begin_area(target.area);
        vimbo::clear_picture();
        begin_newest_first(*pass, target, first, mosaic.mosaic_vertex_count);
        vimbo::end_area();
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }

    std::int32_t draw(std::int32_t most = no_limit)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
        vimbo::begin_area(target.area);
        const std::int32_t drawn =
            draw_newest(*pass, target, *chunks, parts(), most, vertices_per_second);
        vimbo::end_area();
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        return drawn;
    }

    void draw_all()
    {
        constexpr int most_batches = 100000;
        for (int i = 0; i < most_batches && pass->under_way; ++i)
            draw();
        EXPECT_FALSE(pass->under_way) << "a pass without an end";
    }

    static constexpr double vertices_per_second = 1e6;
    vimbo::offscreen picture = {};
    vimbo::path_projection target = {};
    const std::unique_ptr<vimbo::newest_first> pass = std::make_unique<vimbo::newest_first>();
    const std::unique_ptr<vimbo::path_chunks> chunks = std::make_unique<vimbo::path_chunks>();
};

TEST_F(NewestFirstPass, DrawsTheNewestSixteenOfLinesThatLieOverEachOther)
{
    make_path(64 * 20, 64, row_end);
    begin(64); // without the line from the centre
    EXPECT_EQ(draw(), 16);
    EXPECT_FALSE(pass->under_way);
    EXPECT_EQ(pass->drawn, 16);
    EXPECT_EQ(pass->batches, 1);
    EXPECT_EQ(pass->in_view, 64 * 19);
    EXPECT_EQ(pass->left_out, 64 * 19 - 16);
    EXPECT_EQ(pass->looks.spared, 0) << "they were hidden without a look";
    EXPECT_EQ(pass->looks.unseen, 16);
    EXPECT_EQ(pass->looks.touched.left, 90);
    EXPECT_EQ(pass->looks.touched.right, 110);
    EXPECT_EQ(pass->looks.touched.bottom, 10);
    EXPECT_EQ(pass->looks.touched.top, 10);
}

TEST_F(NewestFirstPass, DrawsTheNewestOfLongLinesThatLieOverEachOther)
{
    make_path(64 * 20, 64, long_row_end);
    begin(64); // without the line from the centre
    EXPECT_EQ(draw(), 1);
    EXPECT_FALSE(pass->under_way);
    EXPECT_EQ(pass->runs.used, 1);
    EXPECT_EQ(pass->runs.count[vimbo::path_run_capacity - 1], 2);
    EXPECT_EQ(pass->runs.first[vimbo::path_run_capacity - 1], 64 * 20 - 2);
    EXPECT_EQ(pass->left_out, 64 * 19 - 1);
    EXPECT_EQ(pass->looks.touched.left, 2);
    EXPECT_EQ(pass->looks.touched.right, 249);
}

TEST_F(NewestFirstPass, DrawsEachLongLineThatCanBeSeenByItself)
{
    // Every other line lies in a row of its own; those between are all in one.
    const auto lines = [](std::int32_t i) {
        return i % 4 < 2 ? long_row_end(i) : at(i % 2 == 0 ? 2.25 : 249.95, 12.4 + i / 4 % 40);
    };
    make_path(16 * 10, 16, lines);
    begin(16);
    const std::int32_t drawn = draw();
    EXPECT_FALSE(pass->under_way);
    EXPECT_GT(pass->runs.used, 20) << "a piece for each of them";
    EXPECT_LT(drawn, 16 * 9 - 20) << "those that are covered are drawn, too";
    EXPECT_EQ(drawn + pass->left_out, 16 * 9) << "each is drawn or left out";
}

TEST_F(NewestFirstPass, BeginsWithNothingDrawnAndTakesThePathToHideItself)
{
    make_path(64 * 3000, 64, [](std::int32_t) { return spot; });
    begin();
    EXPECT_TRUE(pass->much_left_out);
    draw_all();
    EXPECT_FALSE(pass->much_left_out) << "nothing of it is hidden";
    EXPECT_EQ(pass->drawn, 64 * 3000 - 1) << "no line ends at the first vertex";
    EXPECT_EQ(pass->in_view, 64 * 3000 - 2 * 65536) << "counted again after each stretch";
    EXPECT_EQ(pass->left_out, 0);
    begin(5);
    EXPECT_TRUE(pass->under_way);
    EXPECT_TRUE(pass->much_left_out);
    EXPECT_EQ(pass->first, 5);
    EXPECT_EQ(pass->undrawn, 64 * 3000);
    EXPECT_EQ(pass->drawn, 0);
    EXPECT_EQ(pass->batches, 0);
    EXPECT_EQ(pass->in_view, 0);
    EXPECT_EQ(pass->looks.unseen, 0);
}

TEST_F(NewestFirstPass, EndsABatchWithTheChunkThatMakesItLongEnough)
{
    make_path(64 * 100, 64, [](std::int32_t) { return spot; });
    begin();
    EXPECT_EQ(draw(1024), 1024);
    EXPECT_EQ(pass->undrawn, 64 * 100 - 1024);
    EXPECT_EQ(draw(1025), 1024 + 64);
    EXPECT_EQ(pass->undrawn, 64 * 100 - 1024 - 1088);
    EXPECT_EQ(pass->batches, 2);
    EXPECT_EQ(pass->runs.used, 1) << "chunks that touch are drawn as one";
}

// Of each chunk's eight parts the last is a row's, that of the newest hides all others; the
// one before it comes from elsewhere, and the rest stays there.
path_vertex row_at_chunks_end(std::int32_t i)
{
    return i % 128 < 96 ? spot : row_end(i);
}

// The same with four parts of each chunk, of which three are hidden.
path_vertex half_a_row(std::int32_t i)
{
    return i % 128 < 64 ? spot : row_end(i);
}

TEST_F(NewestFirstPass, LooksIntoEveryEighthChunkOnlyWhereLittleIsHidden)
{
    make_path(128 * 1000, 128, row_at_chunks_end);
    begin();
    draw_all();
    // Of the first 65536 vertices all chunks, from then on one of eight.
    constexpr int looked_into = 510 + 1 + 61;
    EXPECT_EQ(pass->drawn, 128 + looked_into * 112 + (999 - looked_into) * 128 - 1);
    EXPECT_FALSE(pass->much_left_out);
}

TEST_F(NewestFirstPass, EndsABatchWhereItHasManyPieces)
{
    make_path(128 * 4200, 128, half_a_row);
    begin();
    EXPECT_EQ(draw(), 96 + 4094 * 80) << "that are 4096 pieces, two of them of the newest chunk";
    EXPECT_EQ(pass->runs.used, 4096);
    EXPECT_TRUE(pass->under_way);
}

TEST_F(NewestFirstPass, LooksIntoEveryChunkWhereMoreThanAQuarterIsHidden)
{
    // Three of eight parts are hidden.
    make_path(128 * 1000, 128, half_a_row);
    begin();
    draw_all();
    EXPECT_TRUE(pass->much_left_out);
    EXPECT_EQ(pass->drawn, 1000 * 80 + 16 - 1);
}

TEST_F(NewestFirstPass, GoesPastWhatLiesBesideTheView)
{
    // The newest and the oldest lines are seen; between them are whole groups of chunks,
    // and parts of one, that are not.
    constexpr std::int32_t group = 64 * 16;
    make_path(group * 10, 16, [](std::int32_t i) {
        const bool seen = i < 40 || i >= group * 10 - 8;
        return seen ? spot : at(100.5, 300);
    });
    begin();
    EXPECT_EQ(draw(), 8 + 40) << "the lines between are beside the view";
    EXPECT_FALSE(pass->under_way);
    EXPECT_EQ(pass->in_view, 16 + 48);
}

TEST_F(NewestFirstPass, IsHalfThroughWhereNoMoreIsLeftThanItHasGoneThrough)
{
    make_path(64 * 100, 64, [](std::int32_t) { return spot; });
    begin();
    EXPECT_FALSE(is_half_through(*pass, *chunks));
    draw(64 * 49);
    EXPECT_FALSE(is_half_through(*pass, *chunks));
    draw(64);
    EXPECT_TRUE(is_half_through(*pass, *chunks));
    draw_all();
    EXPECT_TRUE(is_half_through(*pass, *chunks));
    begin(64 * 60);
    EXPECT_FALSE(is_half_through(*pass, *chunks)) << "it counts what another has gone through";
    draw(64 * 20);
    EXPECT_TRUE(is_half_through(*pass, *chunks)) << "it counts what it will not go through";
}

TEST_F(NewestFirstPass, IsHalfThroughWhateverLiesBesideTheView)
{
    // In view are the newest three chunks and the oldest three, with the line that leads out.
    constexpr std::int32_t group = 64 * 16;
    make_path(group * 10, 16, [](std::int32_t i) {
        return i < 40 || i >= group * 10 - 48 ? spot : at(100.5, 300);
    });
    begin();
    EXPECT_EQ(draw(32), 32);
    EXPECT_FALSE(is_half_through(*pass, *chunks));
    EXPECT_EQ(draw(16), 16);
    EXPECT_TRUE(is_half_through(*pass, *chunks));
}

// Lines there and back within a row, next to another one; the newest of them cover it.
path_vertex beside_a_row(std::int32_t i)
{
    if (i >= 128)
        return row_end(i);
    return i % 2 == 0 ? at(95.25, 10.75) : at(105.25, 10.75);
}

TEST_F(NewestFirstPass, LeavesOutLevelLinesNextToARowThatIsOpen)
{
    make_path(192, 64, beside_a_row);
    begin(64);
    EXPECT_EQ(draw(), 16) << "more than a part that covers the row";
    EXPECT_EQ(pass->left_out, 48 + 64);
}

TEST_F(NewestFirstPass, DrawsLinesThatGoAlongTheEdgeOfADiamondNextToARowThatIsOpen)
{
    make_path(192, 64,
              [](std::int32_t i) { return i == 100 ? at(105.125, 10.625) : beside_a_row(i); });
    begin(64);
    EXPECT_EQ(draw(), 16 + 2) << "there and back";
    EXPECT_EQ(pass->left_out, 48 + 62);
}

TEST_F(NewestFirstPass, LooksAtTheDepthsAfterSoManyVertices)
{
    make_path(64 * 100, 64, [](std::int32_t) { return spot; });
    pass->looks.look_after = 600;
    begin();
    EXPECT_EQ(draw(), 640) << "no more than that many before a look";
    EXPECT_EQ(pass->looks.unseen, 0) << "no look was taken";
    EXPECT_EQ(pass->looks.touched.right, -1);
    pass->looks.look_after = no_limit;
    EXPECT_EQ(draw(100), 128);
    EXPECT_EQ(pass->looks.unseen, 128) << "a look was taken before it was due";
}

TEST_F(NewestFirstPass, LeavesOutWhatALookHasSeenAndCountsThat)
{
    // Many lines that leave their pixel open, and one pixel that they all lie in.
    make_path(64 * 100, 64,
              [](std::int32_t i) { return i % 2 == 0 ? at(100.5, 30.5) : at(101.5, 30.5); });
    pass->looks.look_after = 512;
    begin(64);
    EXPECT_EQ(draw(), 512);
    EXPECT_EQ(pass->looks.unseen, 0);
    pass->looks.look_after = no_limit;
    EXPECT_EQ(draw(), 0) << "they are covered, as the depths tell";
    EXPECT_EQ(pass->left_out, 64 * 91);
    EXPECT_EQ(pass->looks.spared, 64 * 91);
    EXPECT_FALSE(pass->under_way);
}

// Makes all depths so near that nothing is drawn where they count.
void spoil_depths(const vimbo::offscreen &picture)
{
    glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
    glClearDepth(0);
    glClear(GL_DEPTH_BUFFER_BIT);
    glClearDepth(1);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

colour colour_at(const vimbo::offscreen &picture, int x, int y)
{
    unsigned char pixel[4] = {};
    glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return {pixel[0], pixel[1], pixel[2]};
}

TEST_F(NewestFirstPass, LeavesOutLinesThatCoverNoPixel)
{
    // Ten lines for each of 158 pixels: the one that leaves its diamond covers it, and so
    // hides the one that enters it.
    constexpr std::int32_t lines = 1600;
    make_path(lines, 16, [](std::int32_t i) { return at(5.03 + 0.1 * i, 20.3); });
    begin(16);
    EXPECT_EQ(draw(), lines - 16) << "they count, as going through them takes time";
    EXPECT_FALSE(pass->under_way);
    int in_runs = 0;
    for (int i = vimbo::path_run_capacity - pass->runs.used; i < vimbo::path_run_capacity; ++i)
        in_runs += pass->runs.count[i] - 1;
    EXPECT_NEAR(in_runs, 158, 3);
    EXPECT_EQ(in_runs + pass->left_out, lines - 16);
    for (int x = 8; x < 160; ++x)
        EXPECT_TRUE(alike(colour_at(picture, x, 20), jump)) << "column " << x;
}

TEST_F(NewestFirstPass, DrawsNothingWhereEveryLineIsBlankAndLooksAtNoDepths)
{
    make_path(64 * 100, 64, [](std::int32_t) { return at(100.6, 30.4); });
    pass->looks.look_after = 128;
    begin(64);
    draw_all();
    EXPECT_EQ(pass->batches, 0);
    EXPECT_EQ(pass->looks.unseen, 0);
    EXPECT_EQ(pass->looks.touched.left, 100) << "a look was taken of what is not drawn";
    EXPECT_TRUE(alike(colour_at(picture, 100, 30), background));
}

TEST_F(NewestFirstPass, DrawsAPartWholeWhereFewOfItsLinesAreBlank)
{
    // Sixteen vertices a row, of which every third stays where the one before it is.
    const auto rows = [](std::int32_t i) {
        const std::int32_t column = (i - i / 3) % 10;
        const std::int32_t row = i / 16;
        return at(40.3 + column, 5.4 + row);
    };
    make_path(64 * 3, 64, rows);
    begin(64);
    EXPECT_EQ(draw(), 64 * 2);
    EXPECT_EQ(pass->left_out, 0);
    EXPECT_EQ(pass->runs.used, 1);
}

TEST_F(NewestFirstPass, DependsOnNoDepthsThatWereThereBefore)
{
    const auto row_for_each_chunk = [](std::int32_t i) {
        const std::int32_t row = 10 + i / 64;
        return at(i % 2 == 0 ? 90.25 : 110.95, row + 0.4);
    };
    make_path(64 * 4, 64, row_for_each_chunk);
    for (const std::int32_t batch : {no_limit, 16}) {
        begin(64);
        spoil_depths(picture);
        while (pass->under_way)
            draw(batch);
        EXPECT_EQ(pass->batches, batch == no_limit ? 1 : 3);
        for (int row = 11; row <= 13; ++row)
            EXPECT_TRUE(alike(colour_at(picture, 100, row), jump)) << "row " << row;
        EXPECT_TRUE(alike(colour_at(picture, 100, 14), background));
    }
}

} // namespace
