// Which mosaic is shown, when it is read again, and how the picture is moved.
#include "tests/program/program_rig.hpp"
#include "tests/support/wait.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <cmath>

namespace
{

using namespace rig;

class Mosaic : public ProgramRig
{
};

TEST_F(Mosaic, ZeroIsShownFromTheStart)
{
    write_file(mosaic(0), square_mosaic(40));
    start({.preview = true});
    EXPECT_TRUE(shows(mark_colour, 400));
    EXPECT_TRUE(shows(outline_colour, 400));
    expect_good_end();
}

TEST_F(Mosaic, ThatIsMissingOrBrokenShowsNothingAndSaysNothing)
{
    write_file(mosaic(1), square_mosaic(40).substr(0, 31));
    write_file(mosaic(2), square_mosaic(40).substr(0, 3239));
    write_file(mosaic(3), square_mosaic(40));
    std::filesystem::create_directories(mosaic(4));
    ASSERT_EQ(mkfifo(mosaic(5).c_str(), 0600), 0);
    write_file(mosaic(6), mosaic_bytes(16, std::uint64_t{1} << 60, square_mosaic(40)));
    write_file(source("a.txt"), "the text");
    start({.preview = true});
    driver->choose("--", "a.txt");
    EXPECT_TRUE(shows(outline_colour, 400));
    EXPECT_EQ(count_in_picture(mark_colour), 0);
    driver->choose_mosaic(3);
    EXPECT_TRUE(shows(mark_colour, 400));
    for (const int broken : {1, 2, 4, 5, 6, 7}) {
        driver->choose_mosaic(3);
        EXPECT_TRUE(shows(mark_colour, 400));
        driver->choose_mosaic(broken);
        EXPECT_TRUE(shows_none(mark_colour)) << "mosaic " << broken;
    }
    // Text, tray and open file are as they were: the last is what "-" deletes.
    EXPECT_EQ(evaluated_text(), "the text");
    std::filesystem::remove(tools.file("mero.arguments"));
    driver->press("Integrate");
    EXPECT_EQ(awaited_arguments("mero"), "-s\n35.000000\n/tmp//vimbo\n" + mosaic(7) + "\n");
    driver->press("-");
    driver->press("-");
    EXPECT_TRUE(wait_until([&] { return !std::filesystem::exists(source("a.txt")); }));
    expect_good_end();
}

TEST_F(Mosaic, SevenIsShownWhenItIsChosen)
{
    write_file(mosaic(7), square_mosaic(40));
    start({.preview = true});
    EXPECT_EQ(count_in_picture(mark_colour), 0);
    driver->choose_mosaic(7);
    EXPECT_TRUE(shows(mark_colour, 400));
    tools.put("mero", "exit 0");
    driver->press("Integrate");
    EXPECT_EQ(awaited_arguments("mero"), "-s\n35.000000\n/tmp//vimbo\n" + mosaic(7) + "\n");
    expect_good_end();
}

TEST_F(Mosaic, ThatChangesOnDiskIsShownAtTheNextReload)
{
    start({.preview = true});
    write_file(mosaic(0), square_mosaic(40));
    for (int i = 0; i < 5; ++i)
        screen->settle();
    EXPECT_EQ(count_in_picture(mark_colour), 0) << "nothing watches the file";
    tools.put("mero", "exit 1");
    driver->press("Evaluate");
    EXPECT_TRUE(shows(mark_colour, 400)) << "the end of a run reads it again";
    expect_good_end();
}

TEST_F(Mosaic, ComesFromTheChosenTray)
{
    write_file(mosaic(0, "other"), square_mosaic(40));
    start({.preview = true});
    EXPECT_EQ(count_in_picture(mark_colour), 0);
    driver->choose("tray", "other");
    EXPECT_TRUE(shows(mark_colour, 400));
    driver->choose("other", "tray");
    EXPECT_TRUE(shows_none(mark_colour));
    expect_good_end();
}

int differing_pixels(const image &one, const image &other, const struct nk_rect &area)
{
    int found = 0;
    for (int y = static_cast<int>(area.y); y < static_cast<int>(area.y + area.h); ++y)
        for (int x = static_cast<int>(area.x); x < static_cast<int>(area.x + area.w); ++x)
            found += one.at(x, y) == other.at(x, y) ? 0 : 1;
    return found;
}

struct nk_rect shared_part(const struct nk_rect &one, const struct nk_rect &other)
{
    const float left = std::max(one.x, other.x);
    const float top = std::max(one.y, other.y);
    return {left, top, std::min(one.x + one.w, other.x + other.w) - left,
            std::min(one.y + one.h, other.y + other.h) - top};
}

TEST_F(Mosaic, LiesBelowAnOpenList)
{
    write_file(mosaic(0), square_mosaic(40));
    // More than the list shows at a time.
    for (int i = 10; i < 50; ++i)
        std::filesystem::create_directories(place.file("tray" + std::to_string(i)));
    start({.preview = true});
    ASSERT_TRUE(shows(mark_colour, 400));
    const image before = screen->screenshot();
    driver->toggle("tray");
    const struct nk_rect picture = driver->picture();
    struct nk_rect list = driver->panels().app().frame.context->begin->popup.win->bounds;
    // The line around it lies half outside; a list of items is a pixel lower.
    list = {std::floor(list.x) - 1, std::floor(list.y) - 1, std::floor(list.w) + 2, list.h + 1};
    ASSERT_GT(list.y + list.h, picture.y + 100) << "the list reaches into the picture";
    ASSERT_LT(list.x, picture.x + picture.w);
    screen->settle();
    const image open = screen->screenshot();
    const struct nk_rect shared = shared_part(picture, list);
    const int covered = static_cast<int>(shared.w) * static_cast<int>(shared.h);
    EXPECT_EQ(differing_pixels(before, open, shared), covered) << "the list is seen through";
    EXPECT_EQ(differing_pixels(before, open, picture), covered) << "the picture beside it changed";
    // Closed again, with nothing chosen.
    driver->toggle("tray");
    EXPECT_TRUE(wait_until([&] {
        return count_in_picture(picture_background) > 0 &&
               screen->screenshot().pixels == before.pixels;
    }));
    expect_good_end();
}

TEST_F(Mosaic, IsDrawnNoMoreWhileThePreviewIsHidden)
{
    write_file(mosaic(0), square_mosaic(40));
    start({.preview = true});
    EXPECT_TRUE(shows(mark_colour, 400));
    const struct nk_rect area = driver->picture();
    driver->show_preview(); // its toggle
    EXPECT_TRUE(wait_until([&] { return count(area, picture_background) == 0; }));
    driver->show_preview();
    EXPECT_TRUE(shows(mark_colour, 400));
    expect_good_end();
}

class View : public ProgramRig
{
protected:
    void SetUp() override
    {
        write_file(mosaic(0), square_mosaic(30));
        start({.more = {"-e", "0,0,0"}, .preview = true});
        area = driver->picture();
        centre = {static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)};
        screen->move(centre);
        screen->settle();
        before = count_in_picture(mark_colour);
        ASSERT_GT(before, 400);
    }

    // Where the leftmost and rightmost marks stand on the centre's row.
    struct span {
        int left, right;
    };
    span marks_on_row(int y) const
    {
        const image all = screen->screenshot();
        span found = {-1, -1};
        for (int x = static_cast<int>(area.x); x < static_cast<int>(area.x + area.w); ++x)
            if (all.at(x, y) == mark_colour) {
                found.left = found.left < 0 ? x : found.left;
                found.right = x;
            }
        return found;
    }

    struct nk_rect area = {};
    point centre = {};
    int before = 0;
};

TEST_F(View, ZoomsAboutItsCentreWithTheWheel)
{
    const span first = marks_on_row(centre.y);
    screen->scroll(1);
    screen->settle();
    const span nearer = marks_on_row(centre.y);
    EXPECT_NEAR(nearer.right - nearer.left, 2 * (first.right - first.left), 3);
    EXPECT_NEAR(nearer.right + nearer.left, first.right + first.left, 3);
    screen->scroll(-2);
    screen->settle();
    const span farther = marks_on_row(centre.y);
    EXPECT_NEAR(2 * (farther.right - farther.left), first.right - first.left, 6);
    expect_good_end();
}

TEST_F(View, PansWithTheLeftButtonAndIsResetWithTheMiddleOne)
{
    const span first = marks_on_row(centre.y);
    screen->press();
    screen->settle();
    screen->move({centre.x + 30, centre.y});
    screen->settle();
    screen->release();
    screen->settle();
    const span moved = marks_on_row(centre.y);
    // 30 of the window's 1200 pixels are a tenth of half the picture's width.
    const int shift = static_cast<int>(std::lround(30.0 / 1200 * 4 * area.w / 2));
    EXPECT_NEAR(moved.left - first.left, shift, 2);
    EXPECT_NEAR(moved.right - first.right, shift, 2);
    screen->click(centre, 2);
    const span reset = marks_on_row(centre.y);
    EXPECT_EQ(reset.left, first.left);
    EXPECT_EQ(reset.right, first.right);
    expect_good_end();
}

TEST_F(View, PansByADragThatBeginsAndEndsBetweenTwoFrames)
{
    const span first = marks_on_row(centre.y);
    const int shift = static_cast<int>(std::lround(30.0 / 1200 * 4 * area.w / 2));
    for (int flick = 1; flick <= 3; ++flick) {
        screen->move({centre.x - 20, centre.y});
        screen->settle();
        kill(vimbo->id(), SIGSTOP);
        screen->move({centre.x - 15, centre.y});
        screen->press();
        screen->move({centre.x, centre.y});
        screen->move({centre.x + 15, centre.y});
        screen->release();
        screen->move({centre.x + 25, centre.y});
        kill(vimbo->id(), SIGCONT);
        screen->settle();
        EXPECT_NEAR(marks_on_row(centre.y).left - first.left, flick * shift, 2 * flick)
            << "after drag number " << flick;
    }
    expect_good_end();
}

TEST_F(View, StopsItsReplayWhenThePointerLeavesTheWindow)
{
    screen->click(centre, 3);
    ASSERT_TRUE(wait_until([&] { return count_in_picture(mark_colour) > before / 8; }));
    const point outside = {1500, centre.y};
    screen->move(outside);
    screen->settle();
    const int stopped = count_in_picture(mark_colour);
    ASSERT_LT(stopped, before) << "the replay was over before the pointer left";
    for (int i = 0; i < 10; ++i)
        screen->settle();
    EXPECT_EQ(count_in_picture(mark_colour), stopped) << "the replay went on without the pointer";
    screen->move(centre);
    EXPECT_TRUE(wait_until([&] { return count_in_picture(mark_colour) > stopped; }))
        << "the replay does not go on with the pointer back";
    expect_good_end();
}

TEST_F(View, ReplaysWithTheRightButton)
{
    screen->click(centre, 3);
    // A replay takes more than eight seconds; its start is empty.
    const int shown = count_in_picture(mark_colour);
    EXPECT_LT(shown, before / 2);
    EXPECT_TRUE(wait_until([&] { return count_in_picture(mark_colour) > shown; }))
        << "the replay does not go on";
    expect_good_end();
}

TEST_F(Mosaic, ThatTakesManyFramesToDrawIsShownWholeWhileTheWindowGoesOn)
{
    constexpr int mm = ::vimbo::length_units_per_mm;
    constexpr int lines = 500000;
    std::vector<::vimbo::path_vertex> points;
    points.reserve(lines + 2);
    for (int i = 0; i < lines; ++i)
        points.push_back({(i % 2 == 0 ? -40 : 40) * mm, (i * (60 * mm / lines) - 40 * mm) | 1});
    // Its end lies apart, above the rest.
    points.push_back({-40 * mm, 45 * mm});
    points.push_back({40 * mm, 45 * mm + 1});
    write_file(mosaic(1), mosaic_bytes(points));
    start({.preview = true});
    driver->choose_mosaic(1);
    screen->settle();
    EXPECT_GT(screen->count_redraws(window, std::chrono::seconds(1)), 1);
    const struct nk_rect area = driver->picture();
    const struct nk_rect upper = nk_rect(area.x, area.y, area.w, area.h / 2 - 60);
    EXPECT_TRUE(wait_until([&] { return count(upper, mark_colour) > 100; }));
    EXPECT_GT(count_in_picture(mark_colour), 10000);
    expect_good_end();
}

} // namespace
