// Which text box has the focus: the editor keeps it whatever is pressed, and lends it
// to the field for a name.
#include "tests/support/panel_rig.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using namespace rig;
using vimbo::has_flag;

class Focus : public testing::Test
{
protected:
    Focus()
    {
        sources = place.file("src");
        write_file(sources + "/a.txt", "one two");
        write_file(sources + "/b.txt", "other");
        vimbo::app_state &app = panels.app();
        app.bar.source_directory = sources.c_str();
        vimbo::initialise_panels(app);
        app.frame.ui_flags |= vimbo::ui_flag::stats_shown | vimbo::ui_flag::bottom_shown;
        tools.put("mero", "exit 0");
        tools.put("plimb", "exit 0");
    }

    ~Focus() override
    {
        constexpr std::uint32_t running =
            vimbo::ui_flag::eval_running | vimbo::ui_flag::stats_running;
        panels.app().frame.ui_flags |= vimbo::ui_flag::stats_shown | vimbo::ui_flag::bottom_shown;
        EXPECT_TRUE(wait_until([&] {
            panels.frame();
            return !has_flag(panels.app().frame.ui_flags, running);
        }));
    }

    void open(std::string_view name)
    {
        panels.click("--");
        panels.click(name);
    }

    // Opens a.txt and selects "ne" in it, from its end to its start.
    void select_in_editor()
    {
        open("a.txt");
        nk_text_edit &edit = panels.app().editor.source_edit;
        edit.select_start = 3;
        edit.select_end = 1;
        edit.cursor = 1;
        panels.frame();
    }

    void press_key(nk_keys key)
    {
        panels.key(key);
        panels.frame();
    }

    void type(std::string_view text)
    {
        panels.type(text);
        panels.frame();
    }

    std::string text()
    {
        return panels.app().editor.source_text;
    }

    std::string open_path()
    {
        return panels.app().bar.source_path;
    }

    bool saving_as()
    {
        return has_flag(panels.app().frame.ui_flags, vimbo::ui_flag::save_as_mode);
    }

    const scratch_directory place;
    const tool_path tools;
    std::string sources;
    panel_rig panels;
};

TEST_F(Focus, IsTheEditorsOnceASourceIsOpened)
{
    open("a.txt");
    type("X");
    EXPECT_EQ(text(), "Xone two");
    panels.click("a.txt");
    panels.click("b.txt");
    type("Y");
    EXPECT_EQ(text(), "Yother");
}

TEST_F(Focus, StaysWithTheEditorAndItsSelectionWhateverIsPressed)
{
    select_in_editor();
    // The second press of a toggle opens again what the first has closed.
    const std::pair<const char *, int> presses[] = {
        {"|", 0},        {"|", 0},   {"-", 1}, {"-", 1},      {"|", 1}, {"|", 1},
        {"Evaluate", 0}, {"Raw", 0}, {"↻", 0}, {"Center", 0}, {"-", 0}};
    for (const auto &[label, nth] : presses) {
        panels.click(label, nth);
        panels.frame();
        const nk_text_edit &edit = panels.app().editor.source_edit;
        EXPECT_NE(edit.active, 0) << label << nth;
        EXPECT_EQ(edit.cursor, 1) << label;
        EXPECT_EQ(std::pair(edit.select_start, edit.select_end), std::pair(3, 1)) << label;
    }
    type("X");
    EXPECT_EQ(text(), "oX two");
}

TEST_F(Focus, StaysWithTheEditorAndItsSelectionWhenADragFromElsewhereCrossesIt)
{
    select_in_editor();
    const point chart = {1200, 300};
    panels.press(chart);
    panels.frame();
    for (const int y : {400, 200, 100}) {
        panels.press({60, y});
        panels.frame();
    }
    panels.release({60, 100});
    panels.frame();
    EXPECT_EQ(panels.app().editor.source_edit.cursor, 1);
    type("X");
    EXPECT_EQ(text(), "oX two");
}

TEST_F(Focus, StaysAwayFromTheEditorThatDidNotHaveIt)
{
    for (const char *label : {"|", "Evaluate", "+", "!", "Raw"}) {
        panels.click(label);
        panels.frame();
        type("X");
        EXPECT_EQ(panels.app().editor.source_edit.active, 0) << label;
    }
    EXPECT_EQ(text(), "");
}

TEST_F(Focus, OfTheEditorOutlivesAnOpenListWhoseKeysItDoesNotTake)
{
    select_in_editor();
    panels.click("0"); // the mosaics
    press_key(NK_KEY_DOWN);
    press_key(NK_KEY_SCROLL_DOWN);
    press_key(NK_KEY_TEXT_WORD_RIGHT);
    type("Y");
    panels.click("3");
    EXPECT_EQ(panels.app().mosaic.mosaic_index, 3);
    type("X");
    EXPECT_EQ(text(), "oX two");
}

TEST_F(Focus, GoesToTheNameFieldAtPlusWithItsCursorAtTheEnd)
{
    open("a.txt");
    for (const bool editor_has_it : {true, false}) {
        panels.app().editor.source_edit.active = editor_has_it ? 1 : 0;
        panels.click("+");
        type("2");
        type("3");
        EXPECT_EQ(open_path(), sources + "/a.txt23");
        press_key(NK_KEY_BACKSPACE);
        EXPECT_EQ(open_path(), sources + "/a.txt2");
        panels.click("!");
        EXPECT_EQ(text(), "one two");
    }
}

TEST_F(Focus, ComesBackToTheEditorHoweverTheNameFieldIsLeft)
{
    select_in_editor();
    panels.click("+");
    type("2");
    panels.click("!");
    panels.frame();
    EXPECT_EQ(panels.app().editor.source_edit.select_start, 3);
    panels.click("+");
    type("2");
    press_key(NK_KEY_TEXT_RESET_MODE);
    panels.frame();
    EXPECT_FALSE(saving_as());
    EXPECT_EQ(panels.app().editor.source_edit.select_start, 3);
    panels.click("+");
    type("2");
    press_key(NK_KEY_ENTER);
    EXPECT_EQ(read_file(sources + "/a.txt2"), "one two");
    panels.frame();
    type("X");
    EXPECT_EQ(text(), "oX two");
}

TEST_F(Focus, OfTheEditorBesideTheNameFieldStaysWhenThatIsLeft)
{
    open("a.txt");
    panels.click("+");
    panels.click(point{100, 100});
    panels.click("!");
    panels.frame();
    type("X");
    EXPECT_EQ(text(), "one twoX");
    EXPECT_EQ(open_path(), sources + "/a.txt");
}

TEST_F(Focus, GoesToTheUnitWhileThatIsTyped)
{
    select_in_editor();
    panels.frame();
    const auto unit = std::ranges::find_if(
        panels.texts(), [](const drawn_text &drawn) { return drawn.text.starts_with("35"); });
    ASSERT_NE(unit, panels.texts().end());
    panels.click(point{static_cast<int>(unit->bounds.x) + 4, static_cast<int>(unit->bounds.y) + 4});
    panels.frame();
    press_key(NK_KEY_BACKSPACE);
    type("7");
    press_key(NK_KEY_ENTER);
    EXPECT_EQ(text(), "one two");
    EXPECT_NE(panels.app().evaluation.unit_um, 35.0);
}

class SaveAs : public Focus
{
};

TEST_F(SaveAs, TakesTheTypedNameBackAtItsCancelButton)
{
    write_file(sources + "/a.txt2", "never opened");
    open("a.txt");
    panels.click("+");
    type("2");
    panels.click("!");
    EXPECT_EQ(open_path(), sources + "/a.txt");
    panels.click("-");
    panels.click("!");
    EXPECT_TRUE(std::filesystem::exists(sources + "/a.txt2"));
    EXPECT_FALSE(std::filesystem::exists(sources + "/a.txt"));
}

TEST_F(SaveAs, TakesTheTypedNameBackAtEscape)
{
    open("a.txt");
    panels.click("+");
    type("/no/such");
    press_key(NK_KEY_TEXT_RESET_MODE);
    EXPECT_FALSE(saving_as());
    EXPECT_EQ(open_path(), sources + "/a.txt");
}

TEST_F(SaveAs, IsNotLeftByAnEscapeThatClosesAList)
{
    open("a.txt");
    panels.click("+");
    panels.click("0");
    EXPECT_TRUE(panels.find("7"));
    press_key(NK_KEY_TEXT_RESET_MODE);
    panels.frame();
    EXPECT_FALSE(panels.find("7"));
    EXPECT_TRUE(saving_as());
}

} // namespace
