// The program under a Wayland compositor, on screens of several densities.
#include "tests/program/program_rig.hpp"
#include "tests/support/wait.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace
{

using namespace rig;

constexpr int width = 800;
constexpr int height = 1240;

// Outermost pixels of a colour.
struct box {
    int left, top, right, bottom; // the last two beside it

    int columns() const
    {
        return right - left;
    }
    int rows() const
    {
        return bottom - top;
    }
    bool operator==(const box &) const = default;
};

std::string text_of(const box &area)
{
    return std::to_string(area.left) + ", " + std::to_string(area.top) + " to " +
           std::to_string(area.right) + ", " + std::to_string(area.bottom);
}

box box_of(const image &all, colour wanted)
{
    box found = {all.width, all.height, 0, 0};
    for (int y = 0; y < all.height; ++y)
        for (int x = 0; x < all.width; ++x)
            if (all.at(x, y) == wanted)
                found = {std::min(found.left, x), std::min(found.top, y),
                         std::max(found.right, x + 1), std::max(found.bottom, y + 1)};
    return found;
}

// Of a length from the tray's centre, what it takes of half the picture's height.
double part_of_half_height(double mm)
{
    constexpr double scale = 64;
    return scale * mm * ::vimbo::length_units_per_mm / 2147483648.0;
}

class Wayland : public ProgramRig
{
protected:
    void start_under_wayland(const start_options &how)
    {
        start_options all = how;
        all.width = how.width == start_options{}.width ? width : how.width;
        all.scale = how.scale == 0 ? 1 : how.scale;
        scale = all.scale;
        start(all);
    }

    // A rectangle of the layout in the screen's pixels.
    box in_pixels(const struct nk_rect &units) const
    {
        const auto rounded = [this](float at) {
            return static_cast<int>(std::lround(static_cast<double>(at) * scale));
        };
        return {rounded(units.x), rounded(units.y), rounded(units.x + units.w),
                rounded(units.y + units.h)};
    }

    // Waits until the picture fills its place.
    testing::AssertionResult shows_picture()
    {
        const box place_of_it = in_pixels(driver->picture());
        box seen = {};
        const bool there = wait_until([&] {
            seen = box_of(screen->screenshot(), picture_background);
            return std::abs(seen.left - place_of_it.left) <= 1 &&
                   std::abs(seen.top - place_of_it.top) <= 1 &&
                   std::abs(seen.right - place_of_it.right) <= 1 &&
                   std::abs(seen.bottom - place_of_it.bottom) <= 1;
        });
        return (there ? testing::AssertionSuccess() : testing::AssertionFailure())
               << "the picture is at " << text_of(seen) << ", its place at "
               << text_of(place_of_it);
    }

    // How many pixels have the colour of marks.
    int marks() const
    {
        const image all = screen->screenshot();
        return static_cast<int>(std::ranges::count(all.pixels, mark_colour));
    }

    // Of text's full contrast, the most that there is between two pixels one above the
    // other.
    double steepest_step()
    {
        const box around = in_pixels(driver->bounds_of("Evaluate"));
        const image all = screen->screenshot();
        int most = 0;
        for (int y = around.top; y < around.bottom; ++y)
            for (int x = around.left; x < around.right; ++x)
                most = std::max(most, std::abs(all.at(x, y).red - all.at(x, y + 1).red));
        constexpr double full = 175 - 50;
        return most / full;
    }

    // Opens the source and puts the cursor at its end.
    void edit(const std::string &text)
    {
        write_file(source("a.txt"), text);
        start_under_wayland({.bottom = true});
        driver->choose("--", "a.txt");
        screen->click(driver->editor());
        screen->key("End");
    }

    // Between two frames.
    void press_briefly(int button = 1)
    {
        screen->press(button);
        screen->release(button);
        screen->settle();
    }

    // The window comes under a pointer that stays where it is.
    void enter_and_click(point at, int button = 1)
    {
        desktop->tell("workspace 2");
        screen->move(at);
        desktop->tell("workspace 1");
        screen->settle();
        press_briefly(button);
    }

    // What another program finds in the clipboard.
    std::string pasted_elsewhere() const
    {
        program pasting({.arguments = {"wl-paste", "-n"},
                         .environment = desktop->environment(),
                         .directory = {},
                         .output = place.file("pasted"),
                         .errors = "/dev/null"});
        pasting.wait_for_end();
        return read_file(place.file("pasted"));
    }

    double scale = 1;
};

class Density : public Wayland, public testing::WithParamInterface<double>
{
};

INSTANTIATE_TEST_SUITE_P(OfPixels, Density, testing::Values(1, 1.25, 1.5, 2, 3));

TEST_P(Density, LeavesPictureOutlineAndTextInPlaceAndSharp)
{
    write_file(mosaic(0), square_mosaic(40));
    start_under_wayland({.preview = true, .scale = GetParam()});
    ASSERT_TRUE(shows_picture());
    ASSERT_TRUE(
        wait_until([&] { return box_of(screen->screenshot(), mark_colour).columns() > 0; }));
    const box area = in_pixels(driver->picture());
    const image all = screen->screenshot();
    const double aspect = static_cast<double>(height) / width;
    for (const auto &[wanted, mm] :
         {std::pair(outline_colour, 60.0), std::pair(mark_colour, 40.0)}) {
        const box seen = box_of(all, wanted);
        EXPECT_NEAR(seen.rows(), part_of_half_height(mm) * area.rows(), 2) << mm << " mm";
        EXPECT_NEAR(seen.columns(), part_of_half_height(mm) * aspect * area.columns(), 2)
            << mm << " mm";
        EXPECT_NEAR(seen.left + seen.right, area.left + area.right, 3) << mm << " mm";
        EXPECT_NEAR(seen.top + seen.bottom, area.top + area.bottom, 3) << mm << " mm";
    }
    EXPECT_GT(steepest_step(), 0.8);
    expect_good_end();
}

TEST_P(Density, LeavesAnOpenListOverThePicture)
{
    for (int i = 10; i < 50; ++i)
        std::filesystem::create_directories(place.file("tray" + std::to_string(i)));
    start_under_wayland({.preview = true, .scale = GetParam()});
    ASSERT_TRUE(shows_picture());
    const image before = screen->screenshot();
    driver->toggle("tray");
    const box picture = in_pixels(driver->picture());
    const box list = in_pixels(driver->panels().app().frame.context->begin->popup.win->bounds);
    ASSERT_GT(list.bottom, picture.top + 100) << "the list reaches into the picture";
    constexpr int near = 3; // pixels that the list's frame may take or leave
    const auto seen_through = [&](const image &open, int by) {
        int count = 0;
        for (int y = picture.top; y < list.bottom + by; ++y)
            for (int x = std::max(picture.left, list.left - by);
                 x < std::min(picture.right, list.right + by); ++x)
                count += open.at(x, y) == before.at(x, y) ? 1 : 0;
        return count;
    };
    EXPECT_TRUE(wait_until([&] { return seen_through(screen->screenshot(), -near) == 0; }))
        << "the list is seen through";
    const image open = screen->screenshot();
    int changed = 0;
    for (int y = picture.top; y < picture.bottom; ++y)
        for (int x = picture.left; x < picture.right; ++x)
            if (y > list.bottom + near || x < list.left - near || x > list.right + near)
                changed += open.at(x, y) == before.at(x, y) ? 0 : 1;
    EXPECT_EQ(changed, 0) << "the picture beside it changed";
    expect_good_end();
}

TEST_P(Density, LeavesNoSeamInAnOpenListOverAChart)
{
    for (int i = 10; i < 50; ++i)
        std::filesystem::create_directories(place.file("tray" + std::to_string(i)));
    start_under_wayland({.statistics = true, .scale = GetParam()});
    driver->panels().click(driver->place_of("tray"));
    const box list = in_pixels(driver->panels().app().frame.context->begin->popup.win->bounds);
    // All of a list is grey, a chart is not.
    const auto coloured = [&] {
        constexpr int near = 3; // pixels that the list's frame may take or leave
        const image all = screen->screenshot();
        int count = 0;
        for (int y = list.top + near; y < list.bottom - near; ++y)
            for (int x = list.left + near; x < list.right - near; ++x)
                count += std::abs(all.at(x, y).blue - all.at(x, y).red) > 4 ? 1 : 0;
        return count;
    };
    ASSERT_TRUE(wait_until([&] { return coloured() > 0; })) << "no chart lies where the list will";
    driver->press("tray");
    EXPECT_TRUE(wait_until([&] { return coloured() == 0; }))
        << coloured() << " pixels of the chart";
    expect_good_end();
}

TEST_P(Density, LeavesADragAsFarAsItIsAndTheOtherButtonsWhatTheyDo)
{
    write_file(mosaic(0), square_mosaic(40));
    start_under_wayland({.preview = true, .scale = GetParam()});
    ASSERT_TRUE(shows_picture());
    ASSERT_TRUE(wait_until([&] { return marks() > 0; }));
    const int all_marks = marks();
    const box first = box_of(screen->screenshot(), outline_colour);
    const struct nk_rect area = driver->picture();
    const point from = {static_cast<int>(area.x + area.w / 2),
                        static_cast<int>(area.y + area.h / 2)};
    screen->move(from);
    screen->settle();
    screen->press();
    screen->settle();
    screen->move({from.x + 24, from.y + 40});
    screen->settle();
    screen->release();
    const double right = 24.0 / width * 4 * static_cast<double>(area.w) / 2 * scale;
    const double down = 40.0 / height * 4 * static_cast<double>(area.h) / 2 * scale;
    box moved = {};
    EXPECT_TRUE(wait_until([&] {
        moved = box_of(screen->screenshot(), outline_colour);
        return std::abs(moved.left - first.left - right) <= 2 * scale &&
               std::abs(moved.top - first.top - down) <= 2 * scale;
    })) << "moved by "
        << moved.left - first.left << ", " << moved.top - first.top << " instead of " << right
        << ", " << down;
    screen->click(from, 2);
    EXPECT_TRUE(wait_until([&] { return box_of(screen->screenshot(), outline_colour) == first; }))
        << "the view is not reset";
    screen->click(from, 3);
    const int begun = marks();
    EXPECT_LT(begun, all_marks / 2) << "no replay begins";
    EXPECT_TRUE(wait_until([&] { return marks() > begun; })) << "the replay does not go on";
    expect_good_end();
}

TEST_P(Density, LeavesNoTraceOfWhatIsDrawnInParts)
{
    write_file(source("a.txt"), "first\n\tsecond\nthird");
    start_under_wayland({.bottom = true, .scale = GetParam()});
    driver->choose("--", "a.txt");
    screen->click(driver->editor());
    screen->type(U" of lines");
    driver->toggle("Raw");
    driver->toggle("tray");
    driver->toggle("tray");
    for (const char *label : {"Evaluate", "Integrate", "Center"}) {
        screen->move(driver->place_of(label));
        screen->settle();
    }
    const point beside = {width / 2, height - 40};
    screen->move(beside);
    screen->settle();
    image in_parts = screen->screenshot();
    const auto stands = [&] {
        const image before = std::exchange(in_parts, screen->screenshot());
        screen->settle();
        return before.pixels == in_parts.pixels;
    };
    ASSERT_TRUE(wait_until(stands));
    // Comes back to the same window, which is then drawn whole.
    desktop->set_scale(GetParam() == 3 ? 2 : 3);
    screen->settle();
    ASSERT_FALSE(screen->screenshot().pixels == in_parts.pixels);
    desktop->set_scale(GetParam());
    screen->move({beside.x, beside.y - 1});
    screen->move(beside);
    EXPECT_TRUE(wait_until([&] { return screen->screenshot().pixels == in_parts.pixels; }));
    expect_good_end();
}

TEST_F(Wayland, ScreenThatChangesItsDensityIsFollowed)
{
    write_file(mosaic(0), square_mosaic(40));
    start_under_wayland({.width = 2 * width, .height = 2 * height, .preview = true});
    EXPECT_TRUE(shows_picture());
    for (const double changed : {2.0, 1.25, 1.6, 1.0}) {
        desktop->set_scale(changed);
        scale = changed;
        ::vimbo::frame_state &frame = driver->panels().app().frame;
        frame.window_width = static_cast<int>(std::lround(2 * width / scale));
        frame.window_height = static_cast<int>(std::lround(2 * height / scale));
        EXPECT_TRUE(shows_picture()) << "at scale " << scale;
        EXPECT_GT(steepest_step(), 0.8) << "at scale " << scale;
        EXPECT_TRUE(wait_until([&] {
            const box marks = box_of(screen->screenshot(), mark_colour);
            return std::abs(marks.rows() -
                            part_of_half_height(40) * in_pixels(driver->picture()).rows()) <= 2;
        })) << "at scale "
            << scale;
    }
    expect_good_end();
}

TEST_F(Wayland, ClickRightAfterThePointerCameInWithoutMotionGoesWhereItIs)
{
    write_file(source("a.txt"), "first line\n");
    write_file(mosaic(0), square_mosaic(40));
    tools.put("mero", "exit 0");
    start_under_wayland({.preview = true});
    ASSERT_TRUE(shows_picture());
    const int before = marks();
    for (const char *label : {"--", "a.txt"}) {
        const point at = driver->place_of(label);
        enter_and_click(at);
        driver->panels().click(at);
    }
    enter_and_click(driver->place_of("Raw"));
    enter_and_click(driver->place_of("Evaluate"));
    EXPECT_EQ(awaited_arguments("mero"), "-S\n-r\n/tmp//vimbo\n");
    EXPECT_EQ(read_file("/tmp/vimbo"), "first line\n");
    enter_and_click(driver->editor());
    screen->type(U"Edited.");
    EXPECT_EQ(evaluated_text(), "first line\nEdited.");
    const struct nk_rect area = driver->picture();
    enter_and_click({static_cast<int>(area.x + area.w / 2), static_cast<int>(area.y + area.h / 2)},
                    3);
    EXPECT_LT(marks(), before / 2) << "no replay begins";
    expect_good_end();
}

TEST_F(Wayland, ClickAfterTheWindowMovedBelowThePointerGoesWhereItIs)
{
    tools.put("mero", "exit 0");
    start_under_wayland({.bottom = true});
    const auto move_window = [this](point to) {
        desktop->tell("move absolute position " + std::to_string(to.x) + ' ' +
                      std::to_string(to.y));
        screen->settle();
    };
    desktop->tell("fullscreen disable, floating enable, resize set " + std::to_string(width) + ' ' +
                  std::to_string(height));
    const point evaluate = driver->place_of("Evaluate");
    screen->move({evaluate.x + 40, evaluate.y + 30});
    move_window({40, 30});
    press_briefly();
    EXPECT_EQ(awaited_arguments("mero"), "-S\n/tmp//vimbo\n");
    const point quit = driver->place_of("X");
    screen->move(quit); // beside the window, which then comes below the pointer
    move_window({0, 0});
    press_briefly();
    EXPECT_EQ(vimbo->wait_for_end(), 0);
    EXPECT_EQ(complaints(), "");
}

TEST_F(Wayland, WindowIsMatchedWithItsMenuEntry)
{
    start_under_wayland({});
    EXPECT_NE(desktop->windows().find("\"app_id\": \"vimbo\""), std::string::npos)
        << desktop->windows();
    expect_good_end();
}

TEST_F(Wayland, OperatorsTypicalRequestIsMet)
{
    write_file(source("a.txt"), "first line\n");
    start_under_wayland({.preview = true});
    tools.put("mero", "exit 0");
    driver->choose("--", "a.txt");
    screen->click(driver->editor());
    screen->type(U"Edited.");
    write_file(mosaic(0), square_mosaic(40));
    driver->press("Integrate");
    EXPECT_EQ(awaited_arguments("mero"), "-s\n35.000000\n/tmp//vimbo\n" + mosaic(0) + "\n");
    EXPECT_EQ(read_file("/tmp/vimbo"), "first line\nEdited.");
    EXPECT_TRUE(shows(mark_colour, 400));
    expect_good_end();
}

TEST_F(Wayland, KeysEditTheText)
{
    edit("one\ntwo");
    screen->type(U" Three!");
    EXPECT_EQ(evaluated_text(), "one\ntwo Three!");
    screen->click(driver->editor());
    for (const char *name : {"ctrl+a", "ctrl+x", "ctrl+v", "ctrl+v", "BackSpace", "ctrl+z"})
        screen->key(name);
    EXPECT_EQ(evaluated_text(), "one\ntwo Three!one\ntwo Three!");
    screen->click(driver->editor());
    for (const char *name : {"ctrl+z", "ctrl+r", "ctrl+Home", "Delete"})
        screen->key(name);
    expect_good_end();
}

TEST_F(Wayland, ClipboardGivesAnotherProgramsText)
{
    edit("here: ");
    const program copying({.arguments = {"wl-copy", "--foreground", "first\nsecond, \xC2\xB5m"},
                           .environment = desktop->environment(),
                           .directory = {},
                           .output = {}});
    EXPECT_TRUE(wait_until([&] { return pasted_elsewhere() == "first\nsecond, \xC2\xB5m"; }));
    screen->key("ctrl+v");
    screen->type(U".");
    EXPECT_EQ(evaluated_text(), "here: first\nsecond, \xC2\xB5m") << "a byte is cut at the end";
    expect_good_end();
}

TEST_F(Wayland, ClipboardTakesTheProgramsText)
{
    edit("one\ntwo");
    screen->key("ctrl+a");
    screen->key("ctrl+c");
    EXPECT_TRUE(wait_until([&] { return pasted_elsewhere() == "one\ntwo"; })) << pasted_elsewhere();
    expect_good_end();
}

TEST_F(Wayland, WindowThatIsOutOfSightCanBeClosed)
{
    start_under_wayland({});
    desktop->tell("workspace 2");
    // Frames go by, of which nobody sees any.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    expect_good_end();
}

} // namespace
