// What each panel looks like, beside pictures that were looked at and stored.
// scripts/golden draws them anew.
#include "tests/program/program_rig.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/golden.hpp"
#include "tests/support/wait.hpp"

#include <cstdlib>
#include <iostream>

namespace
{

using namespace rig;

struct picture_place {
    int x, y, width, height;
};

std::string compared_path(const std::string &name)
{
    std::filesystem::create_directories(VIMBO_GOLDEN_BUILD);
    return VIMBO_GOLDEN_BUILD "/" + name + "-compared.png";
}

class Golden : public ProgramRig
{
protected:
    // With the pointer where it changes nothing that is drawn.
    image picture_of(const picture_place &where)
    {
        screen->move({2, 2});
        screen->settle();
        return crop(screen->screenshot(), where.x, where.y, where.width, where.height);
    }

    void await_tools()
    {
        EXPECT_TRUE(wait_until([this] { return children_of(vimbo->id()) == 0; }));
        screen->settle();
    }

    // Compares with the stored picture, or, when new ones are wanted, stores it.
    testing::AssertionResult looks_right(const std::string &name, const picture_place &where,
                                         int tolerance = panel_tolerance)
    {
        const std::string stored = VIMBO_GOLDEN "/" + name + ".png";
        const image after = picture_of(where);
        const image before = load_png(stored);
        const bool same_size = before.width == after.width && before.height == after.height;
        const picture_difference difference =
            same_size ? compare(before, after, tolerance) : picture_difference{};
        const bool same = same_size && difference.blocks.empty();
        const bool renewing = std::getenv("VIMBO_NEW_GOLDEN") != nullptr;
        if (same && !renewing)
            return testing::AssertionSuccess();
        const std::string compared = compared_path(name);
        const std::string drawn = VIMBO_GOLDEN_BUILD "/" + name + ".png";
        save_png(side_by_side(before, after, difference), compared);
        save_png(after, drawn);
        if (renewing) {
            save_png(after, stored);
            std::cout << (same ? "  same     " : "  CHANGED  ") << compared << '\n';
            return testing::AssertionSuccess();
        }
        testing::AssertionResult failure = testing::AssertionFailure();
        failure << "the picture of " << name << " is another: ";
        if (same_size)
            failure << difference.blocks.size() << " blocks differ, the first at "
                    << difference.blocks[0].x << ',' << difference.blocks[0].y;
        else
            failure << "its size is " << after.width << 'x' << after.height << ", it was "
                    << before.width << 'x' << before.height;
        return failure << "; the new one is " << drawn << ", the old, the new and the difference "
                       << "are " << compared;
    }
};

TEST_F(Golden, TrayBarAndEditorLookAsStored)
{
    write_file(source("rose.lua"), "-- five petals, each 40 µm wide\n"
                                   "for i = 0, 4 do\n"
                                   "    jump(0, 0)\n"
                                   "\tmark(math.cos(i), math.sin(i)) -- a tab in front\n"
                                   "end\n");
    start({.width = 720, .height = 260});
    driver->choose("--", "rose.lua");
    driver->choose_mosaic(5);
    EXPECT_TRUE(looks_right("tray-bar-and-editor", {0, 0, 720, 260}));
    driver->toggle("+");
    EXPECT_TRUE(looks_right("save-as", {0, 0, 720, 44}));
    expect_good_end();
}

TEST_F(Golden, EvaluationLooksAsStored)
{
    tools.put("mero", "await " + place.file("go") + " say 'moves: 12\\nextent: 4.5 x 3 mm' exit 3");
    start({.width = 640, .height = 900, .bottom = true});
    driver->press("Center");
    driver->press("Evaluate");
    awaited_arguments("mero");
    // Until the line is full and its last character turns: each time lets more
    // than one frame go by, and each frame adds one character.
    for (int i = 0; i < 40; ++i)
        screen->settle();
    write_file(place.file("go"), "");
    await_tools();
    EXPECT_TRUE(looks_right("evaluation", {0, 585, 640, 300}));
    expect_good_end();
}

TEST_F(Golden, StatisticsLookAsStored)
{
    std::string figures;
    const auto print = [&figures](double figure) {
        figures += " numbers 1 " + std::to_string(figure);
    };
    for (int k = 1; k <= 32; ++k)
        print(1.0 / k);
    for (int direction = 0; direction < 16; ++direction)
        print((direction + 1) / 16.0);
    print(0.75);
    print(0.25);
    tools.put("plimb", figures);
    start({.width = 1200, .height = 650, .statistics = true});
    driver->press("↻");
    awaited_arguments("plimb");
    await_tools();
    const picture_place panel = {580, 40, 620, 560};
    EXPECT_TRUE(looks_right("statistics-locality", panel));
    driver->choose_starting("Locality", "Mark directions");
    EXPECT_TRUE(looks_right("statistics-directions", panel));
    driver->choose_starting("Mark directions", "Mark / jump");
    EXPECT_TRUE(looks_right("statistics-moves", panel));
    expect_good_end();
}

// Adds a square, its rows so near to each other that no ground shows between.
void fill_square(std::vector<::vimbo::path_vertex> &points, int left_mm, int flag)
{
    constexpr int mm = ::vimbo::length_units_per_mm;
    for (int row = 0; row <= 100; ++row) {
        const int y = 10 * mm + row * mm / 5 + flag;
        const int near_side = (left_mm + (row % 2 == 0 ? 0 : 20)) * mm;
        const int far_side = (left_mm + (row % 2 == 0 ? 20 : 0)) * mm;
        points.push_back({near_side, y});
        points.push_back({far_side, y});
    }
}

// Squares of marks and of jumps, and lines. None of these slants gently: drivers
// take the steps of such a line at other places.
std::string picture_mosaic()
{
    constexpr int mm = ::vimbo::length_units_per_mm;
    std::vector<::vimbo::path_vertex> points = {{-40 * mm, 10 * mm}};
    fill_square(points, -40, 1);
    points.push_back({30 * mm, -40 * mm});
    points.push_back({-10 * mm, 5 * mm + 1});
    points.push_back({-50 * mm, -40 * mm + 1});
    points.push_back({20 * mm, 10 * mm});
    fill_square(points, 20, 0);
    return mosaic_bytes(points);
}

TEST_F(Golden, PreviewLooksAsStored)
{
    write_file(mosaic(0), picture_mosaic());
    start({.width = 800, .height = 1200, .preview = true});
    EXPECT_TRUE(shows(mark_colour, 400));
    EXPECT_TRUE(looks_right("preview", {400, 585, 400, 600}, line_tolerance));
    expect_good_end();
}

} // namespace
