// The kept picture against one drawn directly, pixel by pixel, in the window.
#include "tests/gl/preview_rig.hpp"
#include "ui/fixed_text.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

using namespace rig;

class KeptPicture : public preview_rig
{
protected:
    KeptPicture()
    {
        load(20000, 1);
    }

    // Random moves, most of them short, as in a mosaic.
    void load(int count, unsigned int seed)
    {
        std::mt19937 random(seed);
        std::vector<vimbo::path_vertex> points;
        vimbo::path_vertex last = {0, 0};
        const auto near = [&](std::int32_t from) {
            return (from + static_cast<std::int32_t>(random() % 4000000) - 2000000) % 14000000;
        };
        for (int i = 0; i < count; ++i) {
            last = {near(last.x), near(last.y)};
            points.push_back(last);
        }
        preview_rig::load(points);
    }

    // The tray alone.
    pixels empty_pixels()
    {
        const vimbo::mosaic_state none = {};
        blacken();
        vimbo::draw_preview_directly(frame, preview, {program, none, outline});
        return window_pixels();
    }

    // What a frame shows of a view that is not drawn yet.
    pixels standing_in()
    {
        kept.pace.vertices_per_second = 1; // nothing fits into a frame
        kept.pace.slice_vertices = 1500;
        kept.pass_pace.slice_vertices = 1500;
        kept.chunks.boxed_vertices = 0;
        draw_frame();
        EXPECT_TRUE(vimbo::is_unfinished(kept));
        return window_pixels();
    }

    // Both ways of getting there: at once, and in slices between frames.
    void expect_both_ways(const char *when)
    {
        finish();
        expect_direct_picture(when);
        kept.shown.view = {};
        kept.next.view = {};
        kept.pace.vertices_per_second = 1; // nothing fits into a frame
        kept.pace.slice_vertices = 1500;
        finish();
        expect_direct_picture(when);
    }
};

TEST_F(KeptPicture, HasThePixelsOfADirectDraw)
{
    expect_both_ways("at first");
    preview.pan_x = 0.1237F;
    preview.pan_y = -0.0731F;
    expect_both_ways("panned");
    preview.zoom = 3.37F;
    expect_both_ways("zoomed in");
    preview.zoom = 0.21F;
    expect_both_ways("zoomed out");
}

TEST_F(KeptPicture, HasThePixelsOfADirectDrawAtEachStepOfAReplay)
{
    preview.replay_position = 0;
    for (; preview.replay_position <= vimbo::replay_end; preview.replay_position += 15) {
        draw_frame();
        expect_direct_picture("while it is replayed");
    }
    preview.replay_position = 100;
    finish();
    expect_direct_picture("when the replay was set back");
}

TEST_F(KeptPicture, HasThePixelsOfADirectDrawAfterAChangeInTheMiddleOfAReplay)
{
    preview.replay_position = 70;
    finish();
    preview.rectangle = {.x = 20, .y = 11, .w = 333, .h = 402};
    preview.replay_position = 71;
    finish();
    expect_direct_picture("resized");
    preview.pan_x = 0.3F;
    preview.replay_position = 72;
    finish();
    expect_direct_picture("panned");
    load(9000, 2);
    preview.replay_position = 73;
    finish();
    expect_direct_picture("reloaded");
}

TEST_F(KeptPicture, NeverShowsAMosaicThatIsGone)
{
    finish();
    vimbo::set_text(mosaic.mosaic_path, place.file("missing"));
    vimbo::load_mosaic(mosaic);
    draw_frame();
    expect_direct_picture("with no mosaic");
    load(20000, 1);
    finish();
    expect_direct_picture("with the first one again");
    // Of as many points, and for many frames.
    load(20000, 3);
    kept.pace.vertices_per_second = 1;
    kept.pace.slice_vertices = 1500;
    draw_frame();
    ASSERT_TRUE(vimbo::is_unfinished(kept)) << "the former mosaic is taken for the new one";
    const pixels unfinished = window_pixels();
    expect_same(unfinished, empty_pixels(), "the former mosaic stands in for the new one");
    finish();
    expect_direct_picture("with another one");
}

TEST_F(KeptPicture, IsUnchangedAfterItWasHidden)
{
    finish();
    blacken(); // frames without the panel
    draw_frame();
    EXPECT_FALSE(vimbo::is_unfinished(kept));
    expect_direct_picture("shown again");
}

TEST_F(KeptPicture, DropsTheSlicesOfAnOlderView)
{
    finish();
    for (int i = 1; i < 5; ++i) {
        kept.pace.vertices_per_second = 1;
        kept.pace.slice_vertices = 3000;
        kept.pass_pace.slice_vertices = 3000;
        kept.chunks.boxed_vertices = 0; // nothing is drawn in the frame itself
        preview.pan_x = 0.05F * static_cast<float>(i);
        draw_frame();
        begin_pass();
        EXPECT_TRUE(kept.pass.under_way);
        EXPECT_TRUE(vimbo::is_unfinished(kept));
    }
    finish();
    expect_direct_picture("after the last of the views");
}

TEST_F(KeptPicture, ShowsTheFormerPictureMovedWhileTheNewOneIsDrawn)
{
    finish();
    blacken();
    const pixels before = direct_pixels();
    kept.pace.vertices_per_second = 1;
    // A pan by a whole number of pixels moves the stand-in exactly.
    preview.pan_x = 2.0F * 30 / preview.rectangle.w;
    draw_frame();
    EXPECT_TRUE(vimbo::is_unfinished(kept));
    const pixels moved = window_pixels();
    const auto at = [](const pixels &p, int x, int y) {
        return &p[(static_cast<std::size_t>(y) * window_width + static_cast<std::size_t>(x)) * 4];
    };
    int same = 0;
    int compared = 0;
    for (int y = 200; y < 240; ++y)
        for (int x = 150; x < 450; ++x, ++compared)
            same += std::equal(at(before, x, y), at(before, x, y) + 4, at(moved, x + 30, y));
    EXPECT_GT(same, compared * 9 / 10);
}

TEST_F(KeptPicture, LetsTheSameStandInFromFrameToFrame)
{
    finish();
    preview.zoom = 1.7F;
    const pixels first = standing_in();
    draw_frame();
    expect_same(window_pixels(), first, "in the next frame");
    draw_slices(3);
    draw_frame();
    ASSERT_TRUE(vimbo::is_unfinished(kept));
    expect_same(window_pixels(), first, "after a few slices");
    finish();
    expect_direct_picture("in the end");
}

TEST_F(KeptPicture, KeepsWhatStandsInOnlyWhereItWasScaled)
{
    finish();
    preview.pan_x = 0.1F;
    standing_in();
    EXPECT_EQ(kept.stand_in.framebuffer, 0U) << "it was only moved";
    preview.zoom = 1.7F;
    standing_in();
    EXPECT_NE(kept.stand_in.framebuffer, 0U);
}

TEST_F(KeptPicture, LetsNothingStandInThatItNoLongerShows)
{
    preview.replay_position = 100;
    finish();
    preview.zoom = 1.7F;
    const pixels first = standing_in();
    preview.zoom = 1;
    preview.replay_position = 200; // grows in place
    finish();
    preview.zoom = 1.7F;
    const pixels second = standing_in();
    EXPECT_GT(differing(first, second), 0) << "a picture from before the replay went on";
    draw_frame();
    expect_same(window_pixels(), second, "in the next frame");
    preview.zoom = 3;
    finish();
    preview.zoom = 1.7F;
    const pixels third = standing_in();
    EXPECT_GT(differing(second, third), 0) << "a picture from before another one was whole";
}

TEST_F(KeptPicture, LeavesNoFenceBehindASlice)
{
    // Short lines in rows, none of which hides another.
    constexpr std::int32_t count = 60000;
    std::vector<vimbo::path_vertex> points;
    points.reserve(count);
    for (std::int32_t i = 0; i < count; ++i)
        points.push_back({(i % 200 - 100) * 100000, (i / 200 - 150) * 80000});
    preview_rig::load(points);
    kept.pace.vertices_per_second = 1;
    draw_frame();
    kept.pass_pace.slice_vertices = 1500;
    begin_pass();
    int followed = 0;
    constexpr int most_slices = 100000;
    for (int i = 0; i < most_slices && vimbo::is_unfinished(kept); ++i) {
        kept.pass_pace.slice_vertices = 1500;
        GLsync before = kept.pass_pace.last_fence;
        vimbo::draw_slice(kept, parts());
        EXPECT_EQ(glIsSync(kept.pass_pace.last_fence), GL_TRUE);
        if (before == nullptr || before == kept.pass_pace.last_fence)
            continue;
        EXPECT_EQ(glIsSync(before), GL_FALSE) << "after slice " << followed;
        ++followed;
    }
    EXPECT_GT(followed, 5);
    GLsync last = kept.pass_pace.last_fence;
    draw_frame();
    EXPECT_EQ(glIsSync(last), GL_FALSE) << "after the last slice";
    EXPECT_EQ(kept.pass_pace.last_fence, nullptr);
}

TEST_F(KeptPicture, SurvivesViewsThatShowNothing)
{
    for (const float zoom : {0.0F, 1e-30F, 1e30F, std::numeric_limits<float>::infinity()}) {
        preview.zoom = zoom;
        preview.pan_x = zoom;
        finish();
        expect_direct_picture("with an extreme zoom");
    }
    preview.zoom = 1;
    preview.pan_x = 0;
    finish();
    expect_direct_picture("back again");
}

TEST_F(KeptPicture, ShowsOnlyTheBackgroundWithoutAShaderProgram)
{
    glDeleteProgram(program);
    program = 0;
    finish();
    expect_direct_picture("without a program");
}

TEST_F(KeptPicture, ShowsOnlyTheBackgroundWhereTheFormerPictureLiesElsewhere)
{
    finish();
    kept.pace.vertices_per_second = 1; // nothing fits into a frame
    kept.pace.slice_vertices = 1500;
    preview.pan_x = 5;
    draw_frame();
    ASSERT_TRUE(vimbo::is_unfinished(kept));
    const struct nk_rect area = preview.rectangle;
    const pixels shown = window_pixels();
    int painted = 0;
    for (int y = 0; y < static_cast<int>(area.h); ++y)
        for (int x = 0; x < static_cast<int>(area.w); ++x) {
            const std::size_t row =
                static_cast<std::size_t>(window_height - 1 - y) - static_cast<std::size_t>(area.y);
            const std::size_t at = (row * window_width + static_cast<std::size_t>(x) +
                                    static_cast<std::size_t>(area.x)) *
                                   4;
            painted += alike({shown[at], shown[at + 1], shown[at + 2]}, background) ? 0 : 1;
        }
    EXPECT_EQ(painted, 0) << "the tray, too, lies beside the picture";
}

TEST_F(KeptPicture, TouchesNoPixelWhenItHasNoSize)
{
    preview.rectangle.w = 0;
    blacken();
    const pixels before = window_pixels();
    draw_frame();
    EXPECT_EQ(differing(before, window_pixels()), 0);
}

// The driver refuses after so many pictures.
int granted_pictures;

TEST_F(KeptPicture, IsDrawnDirectlyWhereTheDriverKeepsNoPicture)
{
    const PFNGLCHECKFRAMEBUFFERSTATUSPROC check = __glewCheckFramebufferStatus;
    for (const int granted : {0, 1}) {
        kept.pace.vertices_per_second = 1;
        granted_pictures = granted;
        __glewCheckFramebufferStatus = [](GLenum) -> GLenum {
            return granted_pictures-- > 0 ? GL_FRAMEBUFFER_COMPLETE : GL_FRAMEBUFFER_UNSUPPORTED;
        };
        for (const float zoom : {1.0F, 2.0F}) {
            preview.zoom = zoom;
            draw_frame();
        }
        EXPECT_FALSE(vimbo::is_unfinished(kept));
        EXPECT_EQ(kept.shown.target.framebuffer, 0U);
        EXPECT_EQ(kept.next.target.framebuffer, 0U);
        expect_direct_picture("without a kept one");
        __glewCheckFramebufferStatus = check;
    }
    finish();
    expect_direct_picture("with one again");
}

std::pair<GLint, GLint> texture_size(GLuint texture)
{
    GLint width = 0;
    GLint height = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    glBindTexture(GL_TEXTURE_2D, 0);
    return {width, height};
}

// Objects of other kinds have the same names as its own, or its size in pixels.
TEST(Offscreen, FreesNothingThatIsNotItsOwn)
{
    GLuint framebuffers[192] = {};
    GLuint textures[128] = {};
    GLuint renderbuffers[64] = {};
    glGenFramebuffers(std::size(framebuffers), framebuffers);
    glGenTextures(std::size(textures), textures);
    glGenRenderbuffers(std::size(renderbuffers), renderbuffers);
    for (const GLuint name : framebuffers)
        glBindFramebuffer(GL_FRAMEBUFFER, name);
    for (const GLuint name : textures)
        glBindTexture(GL_TEXTURE_2D, name);
    for (const GLuint name : renderbuffers)
        glBindRenderbuffer(GL_RENDERBUFFER, name);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    const int before = live_objects();
    vimbo::offscreen picture = {};
    ASSERT_TRUE(vimbo::fit_offscreen(picture, static_cast<GLsizei>(renderbuffers[20]), 30));
    vimbo::delete_offscreen(picture);
    EXPECT_EQ(live_objects(), before);
    glDeleteFramebuffers(std::size(framebuffers), framebuffers);
    glDeleteTextures(std::size(textures), textures);
    glDeleteRenderbuffers(std::size(renderbuffers), renderbuffers);
}

TEST(Offscreen, IsMadeAnewForAnotherSizeAndFreesTheFormerOne)
{
    const int before = live_objects();
    vimbo::offscreen picture = {};
    ASSERT_TRUE(vimbo::fit_offscreen(picture, 40, 30));
    const int with_one = live_objects();
    EXPECT_EQ(with_one, before + 3) << "a framebuffer, its colours, its depth";
    for (const auto &[width, height] :
         {std::pair{50, 30}, {41, 30}, {41, 31}, {41, 20}, {40, 30}}) {
        ASSERT_TRUE(vimbo::fit_offscreen(picture, width, height));
        EXPECT_EQ(picture.width, width);
        EXPECT_EQ(picture.height, height);
        EXPECT_EQ(texture_size(picture.colour), std::pair(width, height));
        EXPECT_EQ(live_objects(), with_one);
    }
    vimbo::delete_offscreen(picture);
    EXPECT_EQ(live_objects(), before);
}

// All pixels, RGBA, from the lowest row up.
std::vector<unsigned char> pixels_of(const vimbo::offscreen &picture)
{
    std::vector<unsigned char> pixels(4 * static_cast<std::size_t>(picture.width * picture.height));
    glBindFramebuffer(GL_FRAMEBUFFER, picture.framebuffer);
    glReadPixels(0, 0, picture.width, picture.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return pixels;
}

// With and without the driver's own way to fill a part of a texture.
class FilledOffscreen : public testing::TestWithParam<bool>
{
protected:
    FilledOffscreen()
    {
        if (!GetParam())
            __GLEW_ARB_clear_texture = 0;
        vimbo::fit_offscreen(picture, 40, 30);
        vimbo::fill_offscreen(picture, {0, 0, 40, 30}, black);
    }
    ~FilledOffscreen() override
    {
        vimbo::delete_offscreen(picture);
        __GLEW_ARB_clear_texture = could;
    }

    // Of pixels that are black or of the picture's background: how many are the latter, and
    // whether all of the part's are among them.
    void expect_filled(const vimbo::pixel_edges &part, int count) const
    {
        const std::vector<unsigned char> pixels = pixels_of(picture);
        int filled = 0;
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x) {
                const unsigned char *pixel =
                    &pixels[4 * static_cast<std::size_t>(y * picture.width + x)];
                const bool within =
                    x >= part.left && x < part.right && y >= part.bottom && y < part.top;
                const rig::colour wanted = within ? rig::background : rig::colour{0, 0, 0};
                filled += rig::colour{pixel[0], pixel[1], pixel[2]} == rig::background ? 1 : 0;
                ASSERT_EQ(std::tuple(pixel[0], pixel[1], pixel[2], pixel[3]),
                          std::tuple(wanted.red, wanted.green, wanted.blue, 0))
                    << "at " << x << ", " << y;
            }
        EXPECT_EQ(filled, count);
    }

    static constexpr GLfloat black[] = {0, 0, 0, 0};
    const GLboolean could = __GLEW_ARB_clear_texture;
    vimbo::offscreen picture = {};
};

TEST_P(FilledOffscreen, HasTheColourWithinThePartAndNowhereElse)
{
    const vimbo::pixel_edges part = {7, 3, 19, 28};
    vimbo::fill_offscreen(picture, part, vimbo::picture_background);
    expect_filled(part, 12 * 25);
}

TEST_P(FilledOffscreen, TakesOfAPartWhatLiesWithinIt)
{
    const vimbo::pixel_edges beyond_low = {-5, -3, 4, 6};
    vimbo::fill_offscreen(picture, beyond_low, vimbo::picture_background);
    expect_filled(beyond_low, 4 * 6);
    vimbo::fill_offscreen(picture, {0, 0, 40, 30}, black);
    const vimbo::pixel_edges beyond_high = {33, 20, 50, 31};
    vimbo::fill_offscreen(picture, beyond_high, vimbo::picture_background);
    expect_filled(beyond_high, 7 * 10);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_P(FilledOffscreen, IsLeftAloneByAPartThatLiesBesideItOrHasNoSize)
{
    for (const vimbo::pixel_edges &part : {vimbo::pixel_edges{40, 0, 50, 30},
                                           {-9, 0, 0, 30},
                                           {0, 30, 40, 35},
                                           {0, -9, 40, 0},
                                           {20, 5, 20, 9},
                                           {20, 5, 30, 5},
                                           {30, 5, 20, 9}})
        vimbo::fill_offscreen(picture, part, vimbo::picture_background);
    expect_filled({0, 0, 0, 0}, 0);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutClearTexture, FilledOffscreen, testing::Bool());

} // namespace
