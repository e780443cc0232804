// Pictures drawn newest first against direct ones, pixel by pixel, in the window.
#include "tests/gl/preview_rig.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace
{

using namespace rig;
using vimbo::path_vertex;

constexpr std::int32_t millimetre = vimbo::length_units_per_mm;

path_vertex move_to(double x, double y, bool mark)
{
    return {static_cast<std::int32_t>(x), (static_cast<std::int32_t>(y) & ~1) | (mark ? 1 : 0)};
}

// Parallel lines from side to side, each beside the one before.
std::vector<path_vertex> hatch(int lines, double length, double height)
{
    std::vector<path_vertex> points;
    for (int i = 0; i < lines; ++i) {
        const double y = height * (static_cast<double>(i) / lines - 0.5);
        const double end = i % 2 == 0 ? length / 2 : -length / 2;
        points.push_back(move_to(-end, y, false));
        points.push_back(move_to(end, y, true));
    }
    return points;
}

// Lines of a millimetre, column after column.
std::vector<path_vertex> short_hatch(int lines)
{
    std::vector<path_vertex> points;
    const int columns = 40;
    for (int i = 0; i < lines; ++i) {
        const int column = i * columns / lines;
        const double x = (column - columns / 2.0) * millimetre;
        const double y = ((static_cast<double>(i) * columns / lines) -
                          std::floor(static_cast<double>(i) * columns / lines) - 0.5) *
                         80 * millimetre;
        points.push_back(move_to(x, y, false));
        points.push_back(move_to(x + millimetre, y, i % 7 != 0));
    }
    return points;
}

std::vector<path_vertex> spiral(int moves)
{
    std::vector<path_vertex> points;
    for (int i = 0; i < moves; ++i) {
        const double share = static_cast<double>(i) / moves;
        const double angle = share * 500;
        points.push_back(move_to(45 * millimetre * share * std::cos(angle),
                                 45 * millimetre * share * std::sin(angle), i % 1000 < 800));
    }
    return points;
}

// Steps of a fifth of a pixel and less in all directions, as of a finely sampled drawing.
std::vector<path_vertex> winding(int moves)
{
    std::mt19937 random(21);
    std::vector<path_vertex> points;
    double x = 0;
    double y = 0;
    double angle = 0;
    for (int i = 0; i < moves; ++i) {
        angle += (static_cast<double>(random() % 2001) / 1000 - 1) / 20;
        x += 0.02 * millimetre * std::cos(angle);
        y += 0.02 * millimetre * std::sin(angle);
        if (std::hypot(x, y) > 40 * millimetre)
            angle = std::atan2(-y, -x);
        points.push_back(move_to(x, y, i % 5 != 0));
    }
    return points;
}

std::vector<path_vertex> scatter(int moves, double reach, unsigned int seed)
{
    std::mt19937 random(seed);
    std::vector<path_vertex> points;
    double x = 0;
    double y = 0;
    const auto step = [&](double from) {
        const double to = from + (static_cast<double>(random() % 20001) / 10000 - 1) * reach;
        return std::fabs(to) > 40 * millimetre ? -to / 2 : to;
    };
    for (int i = 0; i < moves; ++i) {
        x = step(x);
        y = step(y);
        points.push_back(move_to(x, y, random() % 4 != 0));
    }
    return points;
}

// Ends on the diamonds' edges and corners, where drivers round: at zoom 1 all lie on
// an eighth of a pixel's grid.
std::vector<path_vertex> on_the_grid(int moves, const struct nk_rect &area)
{
    std::mt19937 random(9);
    std::vector<path_vertex> points;
    const double eighth_x = 2147483647.0 / 64 * window_width / window_height * 2 / area.w / 8;
    const double eighth_y = 2147483647.0 / 64 * 2 / area.h / 8;
    for (int i = 0; i < moves; ++i) {
        const int reach = i % 3 == 0 ? 900 : 40;
        const auto across = static_cast<int>(random() % static_cast<unsigned>(reach)) - reach / 2;
        const auto up = static_cast<int>(random() % static_cast<unsigned>(reach)) - reach / 2;
        points.push_back(move_to(across * eighth_x, up * eighth_y, random() % 2 == 0));
    }
    return points;
}

class NewestFirst : public preview_rig
{
protected:
    // A frame into which nothing is taken to fit.
    void draw_short_frame()
    {
        kept.pace.vertices_per_second = 1;
        draw_frame();
    }

    void expect_direct_picture(const std::string &when)
    {
        kept.pass.batches = -1;
        kept.pace.vertices_per_second = 1;
        finish();
        EXPECT_GE(kept.pass.batches, 0) << "drawn in order " << when;
        preview_rig::expect_direct_picture(when);
    }

    void expect_direct_views(const std::string &what)
    {
        for (const float zoom : {1.0F, 2.0F, 3.7F, 32.0F, 256.0F, 8192.0F, 1048576.0F}) {
            preview.zoom = zoom;
            preview.pan_x = 0.0137F * zoom;
            preview.pan_y = -0.0071F * zoom;
            expect_direct_picture(what + " at zoom " + std::to_string(zoom));
        }
        reset_view();
    }

    void reset_view()
    {
        preview.zoom = 1;
        preview.pan_x = 0;
        preview.pan_y = 0;
    }
};

TEST_F(NewestFirst, HasThePixelsOfADirectDrawWhateverThePath)
{
    load(hatch(40000, 90.0 * millimetre, 60.0 * millimetre));
    expect_direct_views("long hatch");
    load(short_hatch(100000));
    expect_direct_views("short hatch");
    load(spiral(200000));
    expect_direct_views("spiral");
    load(winding(200000));
    expect_direct_views("winding");
    load(scatter(200000, 1.0 * millimetre, 5));
    expect_direct_views("scatter");
    load(scatter(30000, 60.0 * millimetre, 6));
    expect_direct_views("long scatter");
}

TEST_F(NewestFirst, HasThePixelsOfADirectDrawWhereLinesEndOnTheEdgesOfDiamonds)
{
    load(on_the_grid(150000, preview.rectangle));
    expect_direct_views("on the grid");
}

TEST_F(NewestFirst, HasThePixelsOfADirectDrawInViewsAtRandom)
{
    std::mt19937 random(11);
    const auto share = [&] { return static_cast<float>(random() % 2001) / 1000 - 1; };
    load(scatter(60000, 3.0 * millimetre, 7));
    for (int i = 0; i < 60; ++i) {
        preview.zoom = std::exp2(static_cast<float>(random() % 200) / 10);
        preview.pan_x = share() * preview.zoom / 2;
        preview.pan_y = share() * preview.zoom / 2;
        expect_direct_picture("view " + std::to_string(i));
    }
}

TEST_F(NewestFirst, HasThePixelsOfADirectDrawAtEachStepOfAReplay)
{
    load(scatter(100000, 2.0 * millimetre, 8));
    preview.replay_position = 0;
    draw_short_frame();
    for (preview.replay_position = 1; preview.replay_position <= vimbo::replay_end;
         preview.replay_position += 17)
        expect_direct_picture("step " + std::to_string(preview.replay_position));
    preview.replay_position = 90;
    expect_direct_picture("set back");
}

TEST_F(NewestFirst, DrawsAStepOfAReplayThatIsASingleLine)
{
    load(scatter(vimbo::replay_end - 1, 20.0 * millimetre, 20));
    for (preview.replay_position = 100; preview.replay_position < 110; ++preview.replay_position) {
        expect_direct_picture("step " + std::to_string(preview.replay_position));
        EXPECT_EQ(kept.pass.drawn, preview.replay_position == 100 ? 99 : 1);
    }
}

TEST_F(NewestFirst, GoesOnWhenAReplayDoesSoBeforeAPassHasEnded)
{
    load(hatch(60000, 90.0 * millimetre, 80.0 * millimetre));
    preview.replay_position = 60;
    expect_direct_picture("half way");
    for (std::size_t position = 61; position < 90; ++position) {
        preview.replay_position = position;
        kept.chunks.boxed_vertices = 0; // nothing is drawn in the frame itself
        kept.pass_pace.slice_vertices = 1024;
        draw_short_frame();
        draw_slices(2);
    }
    preview.replay_position = 120;
    expect_direct_picture("after steps that were not waited for");
    preview.replay_position = 200;
    kept.chunks.boxed_vertices = 0;
    draw_short_frame();
    draw_slices(2);
    preview.replay_position = 150;
    expect_direct_picture("after a step back in the middle of a pass");
}

TEST_F(NewestFirst, StartsAgainWhereAnotherViewComesBetween)
{
    load(scatter(100000, 2.0 * millimetre, 12));
    for (const float pan : {0.1F, 0.0F, 0.1F, 0.0F, 0.2F}) {
        preview.pan_x = pan;
        kept.chunks.boxed_vertices = 0;
        kept.pass_pace.slice_vertices = 1024;
        draw_short_frame();
        begin_pass();
        EXPECT_TRUE(kept.pass.under_way);
    }
    preview.pan_x = 0;
    expect_direct_picture("back at an earlier view");
}

TEST_F(NewestFirst, HasThePixelsOfADirectDrawAfterReloadsAndResizes)
{
    load(scatter(100000, 2.0 * millimetre, 13));
    expect_direct_picture("at first");
    load(scatter(100000, 2.0 * millimetre, 14));
    expect_direct_picture("with another mosaic of the same size");
    preview.rectangle = {.x = 5, .y = 11, .w = 333, .h = 402};
    expect_direct_picture("in another area");
    preview.rectangle = {.x = 300.6F, .y = 200.2F, .w = 63.5F, .h = 64.9F};
    expect_direct_picture("in a small one");
    frame.window_width = 500;
    frame.window_height = 400;
    preview.rectangle = {.x = 10, .y = 10, .w = 400, .h = 300};
    expect_direct_picture("in another window");
}

TEST_F(NewestFirst, ReadsAnewWhatAShorterMosaicHas)
{
    static_assert(900 < vimbo::window_vertices, "all of it is read at once");
    load(hatch(450, 90.0 * millimetre, 20.0 * millimetre));
    expect_direct_picture("of a mosaic that covers the other one");
    load(scatter(700, 0.2 * millimetre, 24));
    expect_direct_picture("of the other one");
}

TEST_F(NewestFirst, SurvivesViewsThatShowNothing)
{
    load(scatter(20000, 2.0 * millimetre, 15));
    for (const float zoom : {0.0F, 1e-30F, 1e30F, std::numeric_limits<float>::infinity()}) {
        preview.zoom = zoom;
        preview.pan_x = zoom;
        expect_direct_picture("at zoom " + std::to_string(zoom));
    }
}

TEST_F(NewestFirst, DrawsLittleOfAPathThatCoversItself)
{
    constexpr std::int32_t lines = 150000;
    for (const auto &points :
         {hatch(lines, 90.0 * millimetre, 60.0 * millimetre), short_hatch(lines)}) {
        load(points);
        expect_direct_picture("at first");
        preview.pan_x += 0.1F;
        expect_direct_picture("of the second view");
        EXPECT_GT(kept.pass.drawn, 0);
        EXPECT_LT(kept.pass.drawn, lines * 2 * 2 / 5);
    }
}

TEST_F(NewestFirst, StillSeesThatAPathHidesItselfAfterALongStretchThatDoesNot)
{
    constexpr std::int32_t lines = 100000;
    std::vector<path_vertex> points = hatch(lines, 90.0 * millimetre, 80.0 * millimetre);
    const std::vector<path_vertex> newest = spiral(600000);
    points.insert(points.end(), newest.begin(), newest.end());
    load(points);
    preview.zoom = 4;
    expect_direct_picture("from near");
    EXPECT_LT(kept.pass.drawn, 600000 + lines);
}

TEST_F(NewestFirst, GoesPastWhatLiesOutsideOfANearView)
{
    load(scatter(200000, 1.0 * millimetre, 19));
    expect_direct_picture("from afar");
    preview.zoom = 1024;
    expect_direct_picture("of a near view");
    EXPECT_LE(kept.pass.batches, 4);
    EXPECT_LT(kept.pass.drawn, 20000);
}

TEST_F(NewestFirst, LeavesTheDepthSettingsAsTheyAreByDefault)
{
    load(scatter(50000, 2.0 * millimetre, 16));
    expect_direct_picture("at first");
    GLfloat range[2] = {};
    GLint function = 0;
    glGetFloatv(GL_DEPTH_RANGE, range);
    glGetIntegerv(GL_DEPTH_FUNC, &function);
    EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_FALSE);
    EXPECT_EQ(range[0], 0.0F);
    EXPECT_EQ(range[1], 1.0F);
    EXPECT_EQ(function, GL_LESS);
}

TEST_F(NewestFirst, IsNotUsedWhereAPictureFitsIntoAFrame)
{
    load(scatter(2000, 2.0 * millimetre, 17));
    vimbo::draw_preview(frame, preview, parts(), kept);
    EXPECT_FALSE(vimbo::is_unfinished(kept));
    preview.zoom = 2;
    vimbo::draw_preview(frame, preview, parts(), kept);
    EXPECT_EQ(kept.pass.batches, 0);
    EXPECT_EQ(kept.chunks.boxed_vertices, 0) << "boxes that nobody needs";
}

void expect_same_boxes(const vimbo::path_chunks &chunks, const vimbo::path_chunks &wanted)
{
    for (int chunk = 0; chunk * chunks.chunk_vertices < 20001; ++chunk) {
        EXPECT_EQ(chunks.boxes[chunk].left, wanted.boxes[chunk].left);
        EXPECT_EQ(chunks.boxes[chunk].bottom, wanted.boxes[chunk].bottom);
        EXPECT_EQ(chunks.boxes[chunk].right, wanted.boxes[chunk].right);
        EXPECT_EQ(chunks.boxes[chunk].top, wanted.boxes[chunk].top);
    }
}

TEST_F(NewestFirst, ReadsItsBoxesFromWhatTheBufferHolds)
{
    const std::vector<path_vertex> points = scatter(20000, 2.0 * millimetre, 18);
    load(points);
    auto chunks = std::make_unique<vimbo::path_chunks>();
    auto wanted = std::make_unique<vimbo::path_chunks>();
    fit_chunks(*chunks, mosaic);
    fit_chunks(*wanted, mosaic);
    const path_vertex centre = {0, 0};
    box_vertices(*wanted, std::span(&centre, 1));
    box_vertices(*wanted, points);
    while (!are_boxed(*chunks, mosaic))
        box_stretch(*chunks, mosaic);
    expect_same_boxes(*chunks, *wanted);
}

void *map_nothing(GLenum /*target*/, GLintptr /*offset*/, GLsizeiptr /*size*/, GLbitfield /*use*/)
{
    return nullptr;
}

TEST_F(NewestFirst, ReadsItsBoxesWhereTheDriverMapsNoBuffer)
{
    load(scatter(20000, 2.0 * millimetre, 18));
    auto chunks = std::make_unique<vimbo::path_chunks>();
    auto wanted = std::make_unique<vimbo::path_chunks>();
    fit_chunks(*chunks, mosaic);
    fit_chunks(*wanted, mosaic);
    while (!are_boxed(*wanted, mosaic))
        box_stretch(*wanted, mosaic);
    const auto map = glMapBufferRange;
    glMapBufferRange = map_nothing;
    while (!are_boxed(*chunks, mosaic))
        box_stretch(*chunks, mosaic);
    glMapBufferRange = map;
    expect_same_boxes(*chunks, *wanted);
}

} // namespace
