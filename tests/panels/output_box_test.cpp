// The box with the evaluator's output: what of it is seen, and what can be done there.
#include "tests/support/panel_rig.hpp"
#include "tests/support/texts.hpp"
#include "tests/support/tool_path.hpp"
#include "tests/support/wait.hpp"
#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using namespace rig;
using vimbo::has_flag;

class OutputBox : public testing::TestWithParam<int> // the window's height
{
protected:
    OutputBox() : panels(1200, height())
    {
        panels.app().frame.ui_flags |= vimbo::ui_flag::bottom_shown;
        nk_clipboard &clip = panels.app().frame.context->clip;
        clip.copy = [](nk_handle user, const char *text, int characters) {
            const std::string_view all(text);
            static_cast<panel_rig *>(user.ptr)->clipboard =
                all.substr(0, vimbo::character_offset(all, characters));
        };
    }

    static int height()
    {
        return testing::UnitTest::GetInstance()->current_test_info()->value_param() != nullptr
                   ? GetParam()
                   : 1240;
    }

    // A run that prints so many lines, "1 of them" and so on.
    void run(int lines)
    {
        std::string output;
        for (int line = 1; line <= lines; ++line)
            output += std::to_string(line) + " of them\\n";
        run_that_says(output);
    }

    void run_that_says(const std::string &output)
    {
        tools.put("mero", "say '" + output + '\'');
        panels.click("Evaluate");
        ASSERT_TRUE(wait_until([&] {
            panels.frame();
            return !has_flag(panels.app().frame.ui_flags, vimbo::ui_flag::eval_running);
        }));
        panels.frame();
    }

    std::string text()
    {
        return panels.app().evaluation.eval_text;
    }

    // True when the line lies whole in the part of the box that is seen.
    bool shows(std::string_view line) const
    {
        constexpr float above = 616 + 60; // the upper rows, and the panel's own
        constexpr float margin = 4;
        for (const drawn_text &drawn : panels.texts())
            if (drawn.text == line)
                return drawn.bounds.y > above &&
                       drawn.bounds.y + 16 <= static_cast<float>(height()) - margin;
        return false;
    }

    void press_key(nk_keys key)
    {
        panels.key(key);
        panels.frame();
    }

    void type(std::string_view typed)
    {
        panels.type(typed);
        panels.frame();
    }

    // On the box's first row.
    void click_box()
    {
        panels.frame();
        const point label = *panels.find("Raw");
        panels.click(point{label.x, label.y + 40});
    }

    void click_editor()
    {
        panels.click(point{100, 200});
    }

    const tool_path tools;
    panel_rig panels;
};

TEST_F(OutputBox, TakesWhatIsTypedOnceItIsClicked)
{
    run(1);
    const std::string before = text();
    click_box();
    type("note ");
    EXPECT_NE(text(), before);
    EXPECT_EQ(text().size(), before.size() + 5);
    EXPECT_TRUE(holds(text(), "note "));
    press_key(NK_KEY_BACKSPACE);
    press_key(NK_KEY_ENTER);
    EXPECT_TRUE(holds(text(), "note\n"));
    click_editor();
    type("X");
    EXPECT_TRUE(lacks(text(), "X"));
    run(1);
    // How many dots there are before is the tool's time.
    EXPECT_EQ(text().substr(text().find('\n')), before.substr(before.find('\n')))
        << "the next run takes its place";
}

TEST_F(OutputBox, TakesNoMoreThanItsRoom)
{
    run(1);
    click_box();
    press_key(NK_KEY_TEXT_END);
    for (int i = 0; i < 30; ++i)
        type(std::string(400, 'x'));
    EXPECT_LT(text().size(), vimbo::eval_text_capacity);
    EXPECT_GT(text().size(), vimbo::eval_text_capacity - 400);
    run(1);
    EXPECT_TRUE(shows("Status: ok."));
}

TEST_F(OutputBox, CopiesItsWholeText)
{
    run(40);
    panels.clipboard = "before";
    press_key(NK_KEY_COPY);
    EXPECT_EQ(panels.clipboard, "before") << "it has not the focus";
    click_box();
    press_key(NK_KEY_TEXT_SELECT_ALL);
    EXPECT_EQ(panels.clipboard, "before") << "nobody has asked for it";
    press_key(NK_KEY_COPY);
    EXPECT_EQ(panels.clipboard, text());
    type("µ");
    press_key(NK_KEY_COPY);
    EXPECT_EQ(panels.clipboard, text());
}

TEST_P(OutputBox, ShowsTheLastLineOfARun)
{
    for (const int lines : {1, 10, 30, 200}) {
        run(lines);
        EXPECT_TRUE(shows("Status: ok.")) << lines;
    }
}

TEST_F(OutputBox, EndsWithTheEmptyRowBehindTheLastLineAsItsLastRow)
{
    run(200);
    const auto feeds = static_cast<float>(std::ranges::count(text(), '\n'));
    // Of 450 pixels the frame and what it leaves free take five on either side.
    EXPECT_EQ(panels.app().evaluation.output_box.edit.scrollbar.y, (feeds + 1) * 18 - 440);
}

TEST_P(OutputBox, GoesToTheEndsOfItsTextAtOnce)
{
    run(200);
    click_box();
    EXPECT_TRUE(shows("Status: ok.")) << "the click leaves it where it is";
    for (const auto &[start, end] : {std::pair(NK_KEY_TEXT_START, NK_KEY_TEXT_END),
                                     std::pair(NK_KEY_TEXT_LINE_START, NK_KEY_TEXT_LINE_END)}) {
        press_key(start);
        EXPECT_TRUE(shows("Evaluation:") || height() < 760);
        EXPECT_FALSE(shows("Status: ok."));
        press_key(end);
        EXPECT_TRUE(shows("Status: ok."));
    }
    type("!");
    EXPECT_TRUE(text().ends_with("Status: ok.\n!"));
}

TEST_P(OutputBox, IsScrolledByTheWheelAndStaysThere)
{
    run(200);
    click_box();
    panels.scroll(4);
    panels.frame();
    EXPECT_FALSE(shows("Status: ok."));
    panels.frame();
    EXPECT_FALSE(shows("Status: ok.")) << "nothing turns any more";
    panels.scroll(-100);
    panels.frame();
    EXPECT_TRUE(shows("Status: ok."));
}

TEST_F(OutputBox, IsScrolledSidewaysByTheWheelAndNotBeyondItsLeftEdge)
{
    run(3);
    const auto left_of = [&](std::string_view line) {
        for (const drawn_text &drawn : panels.texts())
            if (drawn.text == line)
                return drawn.bounds.x;
        return -1e6F;
    };
    click_box();
    const float left = left_of("2 of them");
    panels.scroll(0, -2);
    panels.frame();
    panels.frame();
    EXPECT_LT(left_of("2 of them"), left - 40);
    panels.scroll(0, 100);
    panels.frame();
    panels.frame();
    EXPECT_EQ(left_of("2 of them"), left);
}

TEST_F(OutputBox, UndoesNothingAsRunsWriteToItsTextToo)
{
    run(1);
    click_box();
    type("note");
    const std::string noted = text();
    for (const nk_keys key : {NK_KEY_TEXT_UNDO, NK_KEY_TEXT_REDO}) {
        press_key(key);
        EXPECT_EQ(text(), noted);
    }
    // More than the toolkit has room for to undo.
    for (int i = 0; i < 10; ++i)
        type(std::string(110, 'x'));
    for (int i = 0; i < 10 * 110; ++i) {
        press_key(NK_KEY_BACKSPACE);
        panels.frame();
    }
    EXPECT_EQ(text(), noted);
}

TEST_P(OutputBox, KeepsItsPlaceWhenTheFocusGoes)
{
    run(200);
    click_box();
    click_editor();
    panels.frame();
    EXPECT_TRUE(shows("Status: ok."));
    click_box();
    press_key(NK_KEY_TEXT_START);
    click_editor();
    panels.frame();
    EXPECT_FALSE(shows("Status: ok."));
    EXPECT_TRUE(panels.find("Evaluation:"));
}

class NamedLine : public OutputBox
{
protected:
    NamedLine()
    {
        std::string source;
        for (int line = 1; line <= 100; ++line)
            source += "line " + std::to_string(line) + '\n';
        write_file(place.file("a.lua"), source);
        vimbo::open_source(panels.app().bar, panels.app().editor, place.file("a.lua").c_str());
        panels.frame();
    }

    // Presses twice on the box's line that begins so.
    void double_click(std::string_view start)
    {
        panels.frame();
        for (const drawn_text &text : panels.texts())
            if (text.text.starts_with(start)) {
                const point at = {static_cast<int>(text.bounds.x) + 20,
                                  static_cast<int>(text.bounds.y) + 8};
                panels.click(at);
                panels.press(at);
                panels.press(at, NK_BUTTON_DOUBLE);
                panels.frame();
                panels.release(at);
                panels.release(at, NK_BUTTON_DOUBLE);
                panels.frame();
                return;
            }
        FAIL() << "no line begins with " << start;
    }

    // The line that the editor's cursor is in, once a letter was typed there.
    std::string typed_into()
    {
        type("X");
        const std::string text = panels.app().editor.source_text;
        const std::size_t at = text.find('X');
        return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
    }

    const scratch_directory place;
};

TEST_F(NamedLine, IsGoneToByADoubleClickOnItsMessage)
{
    run_that_says("source:90: unexpected symbol\\nnone\\n");
    EXPECT_FALSE(panels.find("line 90"));
    double_click("source:90:");
    EXPECT_TRUE(panels.find("line 90")) << "it is in view";
    EXPECT_EQ(panels.app().editor.source_edit.select_start,
              panels.app().editor.source_edit.select_end);
    EXPECT_EQ(typed_into(), "Xline 90");
}

TEST_F(NamedLine, IsThatUnderThePointerWhereTheBoxIsScrolled)
{
    std::string output;
    for (int line = 1; line <= 99; ++line)
        output += "source:" + std::to_string(line) + ": wrong\\n";
    run_that_says(output);
    ASSERT_FALSE(panels.find("source:1: wrong"));
    double_click("source:90:");
    EXPECT_EQ(typed_into(), "Xline 90");
}

TEST_F(NamedLine, IsTheLastOneWhereThereAreNotSoMany)
{
    run_that_says("source:5000: unexpected symbol\\n");
    double_click("source:5000:");
    EXPECT_TRUE(panels.find("line 100"));
    EXPECT_EQ(typed_into(), "X");
}

TEST_F(NamedLine, IsNotThereInOtherLines)
{
    run(3);
    double_click("2 of them");
    EXPECT_EQ(panels.app().editor.source_edit.active, 0) << "the box has the focus";
    EXPECT_EQ(typed_into(), "");
    EXPECT_TRUE(holds(text(), "X"));
}

INSTANTIATE_TEST_SUITE_P(InWindowsOfTheHeight, OutputBox,
                         testing::Values(2000, 1240, 1080, 900, 800, 760));

} // namespace
