// The Preview panel: how pointer, wheel and buttons move the view and the
// replay.
#include "tests/support/panel_bench.hpp"

#include <gtest/gtest.h>

namespace
{

using namespace bench;

constexpr int width = 1600;
constexpr int height = 1240;

class PreviewPanel : public testing::Test
{
protected:
    PreviewPanel()
    {
        desk.app().frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown;
        desk.frame();
        desk.frame();
    }

    vimbo::preview_state &preview()
    {
        return desk.app().preview;
    }

    point middle()
    {
        const struct nk_rect &area = preview().rectangle;
        return {static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)};
    }

    bool laid_out()
    {
        return vimbo::has_flag(desk.app().frame.frame_flags, vimbo::frame_flag::preview_laid_out);
    }

    panel_bench desk = panel_bench(width, height);
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
    desk.click("|", 1);
    desk.frame();
    EXPECT_FALSE(laid_out());
    desk.click("|", 1);
    desk.frame();
    EXPECT_TRUE(laid_out());
}

TEST_F(PreviewPanel, IsGoneWithTheBottomRow)
{
    desk.click("-", 1);
    desk.frame();
    EXPECT_FALSE(laid_out());
    EXPECT_FALSE(desk.find("Evaluate"));
}

TEST_F(PreviewPanel, ZoomsByTwoForEachNotchWithThePanAboutTheCentre)
{
    preview().pan_x = 0.5F;
    preview().pan_y = -0.25F;
    desk.move(middle());
    desk.scroll(1);
    desk.frame();
    EXPECT_EQ(preview().zoom, 2.0F);
    EXPECT_EQ(preview().pan_x, 1.0F);
    EXPECT_EQ(preview().pan_y, -0.5F);
    desk.scroll(-2);
    desk.frame();
    EXPECT_EQ(preview().zoom, 0.5F);
    EXPECT_EQ(preview().pan_x, 0.25F);
    EXPECT_EQ(preview().pan_y, -0.125F);
}

TEST_F(PreviewPanel, LeavesTheMouseToAListThatLiesOverIt)
{
    desk.click("--");
    desk.frame();
    const point at = middle();
    desk.press(at, NK_BUTTON_RIGHT);
    desk.frame();
    desk.release(at, NK_BUTTON_RIGHT);
    desk.scroll(1);
    desk.frame();
    EXPECT_EQ(preview().replay_position, vimbo::replay_end);
    EXPECT_EQ(preview().zoom, 1.0F);
}

TEST_F(PreviewPanel, PansWithTheLeftButtonHeld)
{
    point at = middle();
    desk.move(at);
    desk.frame();
    desk.move({at.x + 10, at.y + 10});
    desk.frame();
    EXPECT_EQ(preview().pan_x, 0.0F) << "the button was not down";
    at = {at.x + 10, at.y + 10};
    desk.press(at);
    desk.frame();
    desk.press({at.x + 40, at.y - 31});
    desk.frame();
    EXPECT_FLOAT_EQ(preview().pan_x, 40.0F / width * 4);
    EXPECT_FLOAT_EQ(preview().pan_y, 31.0F / height * 4);
    desk.release({at.x + 40, at.y - 31});
    desk.frame();
    const float kept = preview().pan_x;
    desk.move(at);
    desk.frame();
    EXPECT_EQ(preview().pan_x, kept);
}

TEST_F(PreviewPanel, ResetsTheViewButNotTheReplayWithTheMiddleButton)
{
    preview().zoom = 8;
    preview().pan_x = 3;
    preview().pan_y = 4;
    preview().replay_position = 100;
    desk.click(middle(), NK_BUTTON_MIDDLE);
    EXPECT_EQ(preview().zoom, 1.0F);
    EXPECT_EQ(preview().pan_x, 0.0F);
    EXPECT_EQ(preview().pan_y, 0.0F);
    EXPECT_GE(preview().replay_position, 100U);
}

TEST_F(PreviewPanel, ReplaysFromTheStartWithTheRightButtonAStepAFrame)
{
    preview().zoom = 8;
    desk.move(middle());
    desk.frame();
    desk.press(middle(), NK_BUTTON_RIGHT);
    desk.frame();
    EXPECT_EQ(preview().replay_position, 1U) << "set to 0, then advanced by this frame";
    EXPECT_EQ(preview().zoom, 8.0F);
    desk.release(middle(), NK_BUTTON_RIGHT);
    for (std::size_t step = 2; step <= 255; ++step) {
        desk.frame();
        ASSERT_EQ(preview().replay_position, step);
    }
    desk.frame();
    EXPECT_EQ(preview().replay_position, 255U);
}

TEST_F(PreviewPanel, ReplaysOnlyWithThePointerOverTheWindow)
{
    preview().replay_position = 10;
    desk.move({-5, -5});
    desk.frame();
    const std::size_t before = preview().replay_position;
    for (int i = 0; i < 10; ++i)
        desk.frame();
    EXPECT_EQ(preview().replay_position, before);
}

TEST_F(PreviewPanel, KeepsItsViewWhileItIsHidden)
{
    preview().zoom = 4;
    preview().pan_x = 0.5F;
    preview().replay_position = 100;
    desk.click("|", 1);
    const std::size_t hidden_at = preview().replay_position;
    for (int i = 0; i < 5; ++i)
        desk.frame();
    EXPECT_EQ(preview().replay_position, hidden_at);
    EXPECT_EQ(preview().zoom, 4.0F);
    EXPECT_EQ(preview().pan_x, 0.5F);
}

TEST_F(PreviewPanel, IgnoresThePictureButtonsBesideThePicture)
{
    preview().zoom = 4;
    const struct nk_rect area = preview().rectangle;
    desk.click({static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y) - 8},
               NK_BUTTON_MIDDLE);
    EXPECT_EQ(preview().zoom, 4.0F);
}

TEST_F(PreviewPanel, LetsTheReplayBeDraggedByItsBar)
{
    desk.move(middle());
    desk.frame();
    const struct nk_rect area = preview().rectangle;
    const point bar = {middle().x, static_cast<int>(area.y + area.h) + 16};
    desk.move(bar);
    desk.frame();
    desk.press(bar);
    desk.frame();
    desk.press({bar.x - 20, bar.y});
    desk.frame();
    EXPECT_NEAR(static_cast<double>(preview().replay_position), 120, 20);
    desk.release(bar);
    desk.frame();
}

TEST(Panels, SurviveEveryWindowSize)
{
    for (const point size : {point{1, 1}, {100, 50}, {256, 616}, {300, 617}, {4000, 3000}}) {
        panel_bench desk(size.x, size.y);
        desk.app().frame.ui_flags |= vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown |
                                     vimbo::ui_flag::stats_shown;
        for (int i = 0; i < 3; ++i) {
            desk.move({i * 40, i * 20});
            desk.frame();
        }
    }
}

} // namespace
