// The Preview panel: how pointer, wheel and buttons move the view and the
// replay.
#include "tests/support/panel_rig.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

namespace
{

using namespace rig;

constexpr int width = 1600;
constexpr int height = 1240;

class PreviewPanel : public testing::Test
{
protected:
    PreviewPanel()
    {
        panels.app().frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown;
        panels.frame();
        panels.frame();
    }

    vimbo::preview_state &preview()
    {
        return panels.app().preview;
    }

    point middle()
    {
        const struct nk_rect &area = preview().rectangle;
        return {static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)};
    }

    bool laid_out()
    {
        return vimbo::has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::preview_laid_out);
    }

    panel_rig panels = panel_rig(width, height);
};

TEST_F(PreviewPanel, StartsWithTheWholePathInAnUnmovedView)
{
    EXPECT_EQ(preview().zoom, 1.0F);
    EXPECT_EQ(preview().pan_x, 0.0F);
    EXPECT_EQ(preview().pan_y, 0.0F);
    EXPECT_EQ(preview().replay_position, 255U);
}

TEST_F(PreviewPanel, ReservesItsPictureOnlyWhileItIsShown)
{
    EXPECT_TRUE(laid_out());
    EXPECT_EQ(preview().rectangle.h, 500);
    EXPECT_GT(preview().rectangle.w, 500);
    panels.click("|", 1);
    panels.frame();
    EXPECT_FALSE(laid_out());
    panels.click("|", 1);
    panels.frame();
    EXPECT_TRUE(laid_out());
}

TEST_F(PreviewPanel, IsGoneWithTheBottomRow)
{
    panels.click("-", 1);
    panels.frame();
    EXPECT_FALSE(laid_out());
    EXPECT_FALSE(panels.find("Evaluate"));
}

TEST_F(PreviewPanel, ZoomsByTwoForEachNotchWithThePanAboutTheCentre)
{
    preview().pan_x = 0.5F;
    preview().pan_y = -0.25F;
    panels.move(middle());
    panels.scroll(1);
    panels.frame();
    EXPECT_EQ(preview().zoom, 2.0F);
    EXPECT_EQ(preview().pan_x, 1.0F);
    EXPECT_EQ(preview().pan_y, -0.5F);
    panels.scroll(-2);
    panels.frame();
    EXPECT_EQ(preview().zoom, 0.5F);
    EXPECT_EQ(preview().pan_x, 0.25F);
    EXPECT_EQ(preview().pan_y, -0.125F);
}

TEST_F(PreviewPanel, ZoomsWhereverThePointerIsAsLongAsItIsShown)
{
    const struct nk_rect area = preview().rectangle;
    const point editor = {100, 200};
    const point above = {middle().x, static_cast<int>(area.y) - 30};
    const point beside = {static_cast<int>(area.x) - 100, middle().y};
    float zoom = 1;
    for (const point at : {editor, above, beside}) {
        panels.move(at);
        panels.scroll(1);
        panels.frame();
        zoom *= 2;
        EXPECT_EQ(preview().zoom, zoom) << "with the pointer at " << at.x << ',' << at.y;
    }
    panels.click("|", 1);
    panels.frame();
    panels.move(middle());
    panels.scroll(1);
    panels.frame();
    EXPECT_EQ(preview().zoom, zoom) << "the picture is hidden";
}

TEST_F(PreviewPanel, LeavesTheMouseToAListThatLiesOverIt)
{
    panels.click("--");
    panels.frame();
    const point at = middle();
    panels.press(at, NK_BUTTON_RIGHT);
    panels.frame();
    panels.release(at, NK_BUTTON_RIGHT);
    panels.scroll(1);
    panels.frame();
    EXPECT_EQ(preview().replay_position, vimbo::replay_end);
    EXPECT_EQ(preview().zoom, 1.0F);
}

TEST_F(PreviewPanel, PansWithTheLeftButtonHeld)
{
    point at = middle();
    panels.move(at);
    panels.frame();
    panels.move({at.x + 10, at.y + 10});
    panels.frame();
    EXPECT_EQ(preview().pan_x, 0.0F) << "the button was not down";
    at = {at.x + 10, at.y + 10};
    panels.press(at);
    panels.frame();
    panels.press({at.x + 40, at.y - 31});
    panels.frame();
    EXPECT_FLOAT_EQ(preview().pan_x, 40.0F / width * 4);
    EXPECT_FLOAT_EQ(preview().pan_y, 31.0F / height * 4);
    panels.release({at.x + 40, at.y - 31});
    panels.frame();
    const float kept = preview().pan_x;
    panels.move(at);
    panels.frame();
    EXPECT_EQ(preview().pan_x, kept);
}

TEST_F(PreviewPanel, ResetsTheViewButNotTheReplayWithTheMiddleButton)
{
    preview().zoom = 8;
    preview().pan_x = 3;
    preview().pan_y = 4;
    preview().replay_position = 100;
    panels.click(middle(), NK_BUTTON_MIDDLE);
    EXPECT_EQ(preview().zoom, 1.0F);
    EXPECT_EQ(preview().pan_x, 0.0F);
    EXPECT_EQ(preview().pan_y, 0.0F);
    EXPECT_GE(preview().replay_position, 100U);
}

TEST_F(PreviewPanel, ReplaysFromTheStartWithTheRightButtonAStepAFrame)
{
    preview().zoom = 8;
    panels.move(middle());
    panels.frame();
    panels.press(middle(), NK_BUTTON_RIGHT);
    panels.frame();
    EXPECT_EQ(preview().replay_position, 1U) << "set to 0, then advanced by this frame";
    EXPECT_EQ(preview().zoom, 8.0F);
    panels.release(middle(), NK_BUTTON_RIGHT);
    for (std::size_t step = 2; step <= 255; ++step) {
        panels.frame();
        ASSERT_EQ(preview().replay_position, step);
    }
    panels.frame();
    EXPECT_EQ(preview().replay_position, 255U);
}

TEST_F(PreviewPanel, ReplaysOnlyWithThePointerOverTheWindow)
{
    preview().replay_position = 10;
    panels.move({-16384, -16384}); // as the window tells that it has left
    panels.frame();
    const std::size_t before = preview().replay_position;
    for (int i = 0; i < 10; ++i)
        panels.frame();
    EXPECT_EQ(preview().replay_position, before);
}

TEST_F(PreviewPanel, IsNotDrawnWhereTheSameFrameHidItBehindALayoutThatHadIt)
{
    vimbo::app_state &app = panels.app();
    vimbo::main_panel(app);
    ASSERT_TRUE(laid_out());
    nk_clear(app.frame.context);
    app.frame.ui_flags &= ~vimbo::ui_flag::bottom_shown;
    vimbo::main_panel(app);
    EXPECT_FALSE(laid_out());
}

TEST_F(PreviewPanel, KeepsItsViewWhileItIsHidden)
{
    preview().zoom = 4;
    preview().pan_x = 0.5F;
    preview().replay_position = 100;
    panels.click("|", 1);
    const std::size_t hidden_at = preview().replay_position;
    for (int i = 0; i < 5; ++i)
        panels.frame();
    EXPECT_EQ(preview().replay_position, hidden_at);
    EXPECT_EQ(preview().zoom, 4.0F);
    EXPECT_EQ(preview().pan_x, 0.5F);
}

TEST_F(PreviewPanel, IgnoresTheMouseButtonsBesideThePicture)
{
    preview().zoom = 4;
    const struct nk_rect area = preview().rectangle;
    panels.click({static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y) - 8},
                 NK_BUTTON_MIDDLE);
    EXPECT_EQ(preview().zoom, 4.0F);
}

TEST_F(PreviewPanel, LetsTheReplayBeDraggedByItsBar)
{
    panels.move(middle());
    panels.frame();
    const struct nk_rect area = preview().rectangle;
    const point bar = {middle().x, static_cast<int>(area.y + area.h) + 16};
    panels.move(bar);
    panels.frame();
    panels.press(bar);
    panels.frame();
    panels.press({bar.x - 20, bar.y});
    panels.frame();
    EXPECT_NEAR(static_cast<double>(preview().replay_position), 120, 20);
    panels.release(bar);
    panels.frame();
}

// All that a frame writes and fills, and where.
std::string drawing_of(panel_rig &panels)
{
    std::ostringstream all;
    const auto add = [&](const struct nk_rect &at) {
        all << ' ' << at.x << ' ' << at.y << ' ' << at.w << ' ' << at.h << '\n';
    };
    for (const drawn_text &text : panels.texts()) {
        all << text.text;
        add(text.bounds);
    }
    for (const drawn_rectangle &box : panels.rectangles())
        add(box.bounds);
    return all.str();
}

void show_all_panels(panel_rig &panels, int frames)
{
    panels.app().frame.ui_flags |=
        vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown | vimbo::ui_flag::stats_shown;
    for (int i = 0; i < frames; ++i) {
        panels.move({i * 40, i * 20});
        panels.frame();
    }
    panels.move({2, 2});
}

TEST(Panels, AreDrawnAsBeforeOnceAnyWindowSizeIsOver)
{
    panel_rig as_ever;
    show_all_panels(as_ever, 3);
    as_ever.frame();
    for (const point size : {point{1, 1}, {100, 50}, {256, 616}, {300, 617}, {4000, 3000}}) {
        panel_rig panels(size.x, size.y);
        show_all_panels(panels, 3);
        const struct nk_rect picture = panels.app().preview.rectangle;
        EXPECT_TRUE(std::isfinite(picture.x) && std::isfinite(picture.y)) << size.x;
        if (size.x >= 100) {
            EXPECT_TRUE(panels.find("X")) << size.x << " x " << size.y;
        }
        panels.app().frame.window_width = 1600;
        panels.app().frame.window_height = 1240;
        for (int i = 0; i < 3; ++i)
            panels.frame();
        EXPECT_EQ(drawing_of(panels), drawing_of(as_ever)) << size.x << " x " << size.y;
    }
}

} // namespace
