// Small things that the panels promise and that nothing else would show: a command's
// text, a step, a gap.
#include "tests/support/panel_rig.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/wait.hpp"
#include "ui/take_key.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using namespace rig;
using vimbo::has_flag;

class Contract : public testing::Test
{
protected:
    Contract()
    {
        vimbo::app_state &app = panels.app();
        app.frame.ui_flags |= vimbo::ui_flag::stats_shown | vimbo::ui_flag::bottom_shown;
        std::filesystem::create_directories(place.file("trays/one"));
        std::filesystem::create_directories(place.file("trays/two"));
        vimbo::choose_tray(app.frame, app.mosaic, place.file("trays/one").c_str());
    }

    ~Contract() override
    {
        measured();
    }

    bool measured()
    {
        return wait_until([&] {
            panels.frame();
            return !has_flag(panels.app().frame.ui_flags, vimbo::ui_flag::stats_running);
        });
    }

    void measure(std::string_view actions)
    {
        tools.put("plimb", actions);
        panels.click("↻");
        ASSERT_TRUE(measured());
    }

    // The smallest filled rectangle around a text.
    struct nk_rect box_around(std::string_view label)
    {
        const point inside = *panels.find(label);
        struct nk_rect found = {0, 0, 1e6F, 1e6F};
        for (const drawn_rectangle &box : panels.rectangles())
            if (NK_INBOX(static_cast<float>(inside.x), static_cast<float>(inside.y), box.bounds.x,
                         box.bounds.y, box.bounds.w, box.bounds.h) &&
                box.bounds.w < found.w)
                found = box.bounds;
        return found;
    }

    // Clicks the item of the open list and tells whether a frame asked for the mosaic.
    bool reloads_at(std::string_view item)
    {
        point at = {};
        for (const drawn_text &text : panels.texts())
            if (text.text == item)
                at = {static_cast<int>(text.bounds.x) + 4, static_cast<int>(text.bounds.y) + 4};
        bool reloads = false;
        const auto frame = [&] {
            panels.frame();
            reloads = reloads ||
                      has_flag(panels.app().frame.frame_flags, vimbo::frame_flag::reload_mosaic);
        };
        panels.move(at);
        frame();
        panels.press(at);
        frame();
        panels.release(at);
        frame();
        return reloads;
    }

    const scratch_directory place;
    const std::string sources = place.file("src");
    const tool_path tools;
    panel_rig panels;
};

TEST_F(Contract, OfTheStatisticsCommandIsAQuoteThatStaysOpen)
{
    panels.app().mosaic.mosaic_index = 3;
    measure("exit 0");
    EXPECT_EQ(panels.app().frame.scratch_text,
              "plimb \"" + place.file("trays/one") + "/_mosaics/3.mmv");
}

TEST_F(Contract, OfTheUnitsArrowsIsAStepOfOne)
{
    panels.frame();
    const struct nk_rect unit = box_around("Unit [µm]");
    ASSERT_LT(unit.w, 1000);
    const int y = static_cast<int>(unit.y + unit.h / 2);
    panels.click(point{static_cast<int>(unit.x + unit.w) - 9, y});
    EXPECT_EQ(panels.app().evaluation.unit_um, 36.0);
    panels.click(point{static_cast<int>(unit.x) + 9, y});
    panels.click(point{static_cast<int>(unit.x) + 9, y});
    EXPECT_EQ(panels.app().evaluation.unit_um, 34.0);
}

TEST_F(Contract, OfFortyNumbersIsThatTheLastTenStayToTheFractions)
{
    measure("numbers 48 0.5 numbers 1 0.75 numbers 1 0.125");
    measure("numbers 40 0.25");
    const vimbo::stats_run_state &run = panels.app().statistics.run;
    EXPECT_EQ(run.stats_locality[31], 0.25F);
    EXPECT_EQ(run.stats_directions[7], 0.25F);
    EXPECT_EQ(run.stats_directions[8], 0.5F);
    EXPECT_EQ(run.stats_moves[0], 0.75F);
    EXPECT_EQ(run.stats_moves[1], 0.125F);
}

TEST_F(Contract, OfTheTrayThatIsClickedAgainIsNoReload)
{
    panels.click("one");
    EXPECT_FALSE(reloads_at("one"));
    EXPECT_EQ(panels.app().mosaic.tray_directory, place.file("trays/one"));
    panels.click("one");
    EXPECT_TRUE(reloads_at("two"));
    EXPECT_EQ(panels.app().mosaic.tray_directory, place.file("trays/two"));
}

TEST_F(Contract, OfTheScaleIsAGapOf152BetweenItsNumbers)
{
    panels.frame();
    const auto row_of = [&](std::string_view label) { return panels.find(label)->y; };
    const int spacing = static_cast<int>(panels.app().frame.context->style.window.spacing.y);
    const int distance = 24 + spacing + 152 + spacing;
    EXPECT_EQ(row_of("0.5") - row_of("1.0"), distance);
    EXPECT_EQ(row_of("0.0") - row_of("0.5"), distance);
    EXPECT_EQ(std::ranges::count(panels.texts(), "   ", &drawn_text::text), 2);
}

// True when the window's last frame has drawn this very box.
bool has_box(const panel_rig &window, const struct nk_rect &box)
{
    return std::ranges::any_of(window.rectangles(), [&](const drawn_rectangle &drawn) {
        return drawn.bounds.x == box.x && drawn.bounds.y == box.y && drawn.bounds.w == box.w &&
               drawn.bounds.h == box.h;
    });
}

// The panels of a window, all of them or none but the editor.
bool draws_box(int width, int height, bool all, const struct nk_rect &box)
{
    constexpr std::uint32_t others =
        vimbo::ui_flag::stats_shown | vimbo::ui_flag::bottom_shown | vimbo::ui_flag::preview_shown;
    panel_rig window(width, height);
    std::uint32_t &flags = window.app().frame.ui_flags;
    flags = all ? flags | others : flags & ~others;
    window.frame();
    return has_box(window, box);
}

TEST(PanelSizes, AreSharedOutInAWideWindowAndHaveALeastInANarrowOne)
{
    EXPECT_TRUE(draws_box(1600, 900, true, {10, 42, 774, 512})) << "the editor";
    EXPECT_TRUE(draws_box(1600, 900, true, {788, 42, 24, 512})) << "what hides the statistics";
    EXPECT_TRUE(draws_box(1600, 900, true, {816, 74, 774, 480})) << "the statistics";
    EXPECT_TRUE(draws_box(1600, 900, true, {816, 618, 774, 252})) << "the picture";
    EXPECT_TRUE(draws_box(400, 900, true, {10, 42, 256, 512})) << "the editor";
    EXPECT_TRUE(draws_box(400, 900, true, {298, 74, 256, 480})) << "the statistics";
    EXPECT_TRUE(draws_box(400, 900, true, {351, 115, 256, 400})) << "a chart";
    EXPECT_TRUE(draws_box(400, 900, true, {298, 618, 256, 252})) << "the picture";
    EXPECT_TRUE(draws_box(400, 900, true, {28, 700, 220, 178})) << "the output, as far as seen";
    EXPECT_TRUE(draws_box(400, 2000, true, {28, 700, 220, 450})) << "the output";
    EXPECT_TRUE(draws_box(400, 2000, true, {298, 618, 256, 1352})) << "the picture";
}

TEST(PanelSizes, AreTheEditorsWhereItIsAlone)
{
    EXPECT_TRUE(draws_box(1600, 900, false, {10, 42, 1552, 796})) << "the editor";
    EXPECT_TRUE(draws_box(1600, 900, false, {1566, 42, 24, 796})) << "what shows the statistics";
    EXPECT_TRUE(draws_box(400, 700, false, {10, 42, 352, 596})) << "the editor";
}

TEST_F(Contract, OfButtonsAndListsIsTheirSize)
{
    for (const char *name : {"src/a", "src/b"})
        write_file(place.file(name), "");
    panels.app().bar.source_directory = sources.c_str();
    panels.app().frame.ui_flags = vimbo::ui_flag::stats_shown;
    vimbo::initialise_panels(panels.app());
    panels.frame();
    for (const struct nk_rect &box : {nk_rect(10, 6, 32, 32), {46, 6, 32, 32}, {82, 6, 32, 32}})
        EXPECT_TRUE(has_box(panels, box)) << "the button at " << box.x;
    EXPECT_TRUE(has_box(panels, {118, 6, 700, 32})) << "the list of sources";
    EXPECT_TRUE(has_box(panels, {822, 6, 700, 32})) << "the list of trays";
    EXPECT_TRUE(has_box(panels, {1526, 6, 64, 32})) << "the list of mosaics";
    EXPECT_TRUE(has_box(panels, {825, 79, 32, 32})) << "the button that measures";
    EXPECT_TRUE(has_box(panels, {861, 79, 720, 32})) << "the list of charts";
    EXPECT_TRUE(has_box(panels, {825, 115, 40, 400})) << "the scale";
    EXPECT_TRUE(has_box(panels, {869, 115, 712, 400})) << "the chart";
    panels.click("0");
    EXPECT_TRUE(has_box(panels, {1531, 42, 44, 32})) << "the first mosaic";
    EXPECT_TRUE(has_box(panels, {1531, 294, 44, 32})) << "the last mosaic";
    panels.key(vimbo::escape_key);
    panels.frame();
    panels.click("--");
    EXPECT_TRUE(has_box(panels, {123, 42, 680, 32})) << "the first source";
    EXPECT_TRUE(has_box(panels, {123, 78, 680, 32})) << "the second one";
    panels.key(vimbo::escape_key);
    panels.frame();
    panels.click("one");
    EXPECT_TRUE(has_box(panels, {827, 42, 680, 32})) << "the first tray";
    panels.key(vimbo::escape_key);
    panels.frame();
    panels.click(point{1000, 95});
    EXPECT_TRUE(has_box(panels, {866, 115, 236, 32})) << "the first chart";
    EXPECT_TRUE(has_box(panels, {866, 187, 236, 32})) << "the last chart";
}

TEST_F(Contract, OfALongListIsThatItEndsAndScrolls)
{
    for (int i = 0; i < 60; ++i)
        write_file(place.file("src/" + std::to_string(1000 + i)), "");
    panels.app().bar.source_directory = sources.c_str();
    vimbo::initialise_panels(panels.app());
    panels.click("--");
    panels.frame();
    // Its right edge, without half of the frame at either end.
    EXPECT_TRUE(has_box(panels, {803, 38, 15, 768 - 2}));
}

} // namespace
