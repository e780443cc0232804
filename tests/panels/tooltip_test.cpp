// The value of a chart under the pointer, at the window's edges.
#include "tests/support/panel_rig.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using namespace rig;

constexpr const char *value = "0.250000";

// Where the tooltip with the value lies; of no size when there is none.
struct nk_rect tooltip_of(const panel_rig &panels)
{
    struct nk_rect found = {};
    for (const drawn_text &text : panels.texts())
        if (text.text == value)
            for (const drawn_rectangle &box : panels.rectangles())
                if (box.bounds.x <= text.bounds.x && box.bounds.y <= text.bounds.y &&
                    box.bounds.x + box.bounds.w >= text.bounds.x + 64 && box.bounds.w < 110 &&
                    box.bounds.h < 60)
                    found = box.bounds;
    return found;
}

// Two columns, each of the value.
void show_chart(panel_rig &panels)
{
    vimbo::app_state &app = panels.app();
    app.frame.ui_flags |= vimbo::ui_flag::stats_shown;
    app.statistics.stats_chart = 2;
    std::ranges::fill(app.statistics.run.stats_moves, 0.25F);
    panels.frame();
    panels.frame();
}

// With the pointer there.
struct nk_rect tooltip_at(panel_rig &panels, point pointer)
{
    panels.move(pointer);
    panels.frame();
    panels.frame();
    return tooltip_of(panels);
}

class TooltipAt : public testing::TestWithParam<int> // the window's height
{
};

INSTANTIATE_TEST_SUITE_P(ChartInWindowsOfTheHeight, TooltipAt,
                         testing::Values(480, 470, 420, 1240));

TEST(Tooltip, LiesBesideThePointerAndIsMovedNoFartherThanTheWindowsEdgesWant)
{
    constexpr int width = 640;
    constexpr int height = 470;
    panel_rig panels(width, height);
    show_chart(panels);
    // With its frame it is 82 wide and 38 high; a line and a pixel of that lie outside.
    const auto expect_at = [&](point pointer, float x, float y) {
        const struct nk_rect box = tooltip_at(panels, pointer);
        EXPECT_EQ(box.x, x + 1) << "with the pointer at " << pointer.x << ", " << pointer.y;
        EXPECT_EQ(box.y, y + 2) << "with the pointer at " << pointer.x << ", " << pointer.y;
    };
    expect_at({450, 425}, 450, 425);
    expect_at({450, 431}, 450, 431);
    expect_at({450, 432}, 450, 432 - 38);
    expect_at({450, 460}, 450, 460 - 38);
    expect_at({557, 425}, 557, 425);
    expect_at({558, 425}, 557, 425);
    expect_at({600, 460}, 557, 460 - 38);
}

TEST_P(TooltipAt, EveryPlaceOfAChartLiesInTheWindow)
{
    constexpr int width = 640;
    panel_rig panels(width, GetParam());
    show_chart(panels);
    int seen = 0;
    for (int x = width / 2; x < width; x += 7)
        for (int y = 300; y < std::min(GetParam(), 510); y += 3) {
            const struct nk_rect box = tooltip_at(panels, {x, y});
            if (box.w == 0)
                continue;
            ++seen;
            EXPECT_GE(box.x, 0) << x << ' ' << y;
            EXPECT_GE(box.y, 0) << x << ' ' << y;
            EXPECT_LT(box.x + box.w, width) << x << ' ' << y;
            EXPECT_LT(box.y + box.h, static_cast<float>(GetParam())) << x << ' ' << y;
        }
    EXPECT_GT(seen, 50);
}

} // namespace
