// The editor under a real mouse.
#include "tests/program/program_rig.hpp"

#include <chrono>
#include <thread>

namespace
{

using namespace rig;

class Editing : public ProgramRig
{
protected:
    void edit(const std::string &text, bool preview = false)
    {
        write_file(source("a.txt"), text);
        start({.bottom = true, .preview = preview});
        driver->choose("--", "a.txt");
    }

    // The left edge of a character's cell, and the middle of its row.
    point place(int row, double column) const
    {
        return {15 + static_cast<int>(glyph * column), 57 + 18 * row};
    }

    void replace_selection_by(std::u32string_view text)
    {
        screen->type(text);
    }

    static std::string numbered_lines(int count)
    {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += std::to_string(1000 + i) + '\n';
        return text;
    }

    static constexpr double glyph = 6.8; // of the program's font
};

TEST_F(Editing, ADoubleClickSelectsAWordAndATripleOneALine)
{
    edit("one two(three)\nfour");
    screen->click_times(place(0, 5.5), 2);
    replace_selection_by(U"a");
    EXPECT_EQ(evaluated_text(), "one a(three)\nfour");
    screen->click_times(place(0, 5.5), 3);
    replace_selection_by(U"b");
    EXPECT_EQ(evaluated_text(), "b\nfour");
    expect_good_end();
}

TEST_F(Editing, TwoSlowClicksSelectNothing)
{
    edit("one two");
    screen->click(place(0, 5.1));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    screen->click(place(0, 5.1));
    screen->type(U"x");
    EXPECT_EQ(evaluated_text(), "one txwo");
    expect_good_end();
}

TEST_F(Editing, AClickWithShiftExtendsTheSelection)
{
    edit("one two three");
    screen->click(place(0, 4.1));
    screen->hold_modifier("Shift_L", true);
    screen->click(place(0, 7.1));
    screen->hold_modifier("Shift_L", false);
    replace_selection_by(U"x");
    EXPECT_EQ(evaluated_text(), "one x three");
    expect_good_end();
}

TEST_F(Editing, AClickInThePaddingIsOneOnTheNearestCharacter)
{
    edit("one\ntwo");
    screen->key("ctrl+a");
    screen->click({10, place(1, 0).y});
    screen->type(U"x");
    EXPECT_EQ(evaluated_text(), "one\nxtwo");
    expect_good_end();
}

TEST_F(Editing, ASelectionThatIsDraggedBeyondTheEdgeScrollsOnAndOn)
{
    edit(numbered_lines(100));
    screen->move(place(1, 0));
    screen->settle();
    screen->press();
    screen->move({place(1, 0).x, 620});
    std::this_thread::sleep_for(std::chrono::seconds(4));
    screen->release();
    replace_selection_by(U"x");
    EXPECT_EQ(evaluated_text(), "1000\nx");
    expect_good_end();
}

TEST_F(Editing, TheWheelScrollsTheTextUnderThePointer)
{
    edit(numbered_lines(100));
    screen->move(place(0, 0));
    screen->scroll(-2);
    screen->settle();
    screen->click(place(0, 0));
    screen->type(U"x");
    EXPECT_EQ(evaluated_text().substr(30, 11), "x1006\n1007\n");
    expect_good_end();
}

TEST_F(Editing, TheWheelScrollsSidewaysWithShift)
{
    edit(std::string(400, 'a') + "\n");
    screen->move(place(0, 0));
    screen->hold_modifier("Shift_L", true);
    screen->scroll(-2);
    screen->settle();
    screen->hold_modifier("Shift_L", false);
    screen->click(place(0, 0));
    screen->type(U"x");
    const std::size_t at = evaluated_text().find('x');
    EXPECT_GE(at, 15U) << "108 pixels";
    EXPECT_LE(at, 17U);
    expect_good_end();
}

TEST_F(Editing, ControlZBringsUnsavedTextBackWhenAnotherSourceWasOpened)
{
    write_file(source("b.txt"), "the other");
    edit("one");
    screen->click(driver->editor());
    screen->type(U" more");
    driver->choose("a.txt", "b.txt");
    EXPECT_EQ(evaluated_text(), "the other");
    screen->click(driver->editor());
    screen->key("ctrl+z");
    EXPECT_EQ(evaluated_text(), "one more");
    screen->click(driver->editor());
    screen->key("ctrl+z");
    screen->key("ctrl+z");
    EXPECT_EQ(evaluated_text(), "one");
    screen->click(driver->editor());
    for (int i = 0; i < 3; ++i)
        screen->key("ctrl+r");
    EXPECT_EQ(evaluated_text(), "the other");
    EXPECT_NO_THROW(driver->place_of("b.txt")) << "the bar keeps the new name";
    expect_good_end();
}

} // namespace
