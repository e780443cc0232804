// The mouse on a text, in a window that is not there.
#include "sources/editor_mouse.hpp"

#include "sources/text_file.hpp"
#include "tests/support/even_font.hpp"
#include "ui/input_queue.hpp"
#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace
{

using namespace vimbo;

constexpr float glyph = rig::even_glyph;
constexpr float row = 18;

class EditorMouse : public testing::Test
{
protected:
    EditorMouse()
    {
        nk_init_default(&context, &font);
        set("");
    }
    ~EditorMouse() override
    {
        nk_free(&context);
    }

    void set(const std::string &text)
    {
        std::memcpy(memory, text.data(), text.size());
        nk_textedit_init_fixed(&edit, memory, sizeof memory);
        edit.single_line = 0;
        edit.string.buffer.allocated = text.size();
        edit.string.len = character_count(text);
    }

    void lay_out(float seconds = 0)
    {
        take_input(*queue, &context);
        ASSERT_NE(nk_begin(&context, "", nk_rect(0, 0, 400, 400), NK_WINDOW_NO_SCROLLBAR), 0);
        nk_layout_row_dynamic(&context, box_height, 1);
        view = view_of(&context, nk_widget_bounds(&context));
        follow_mouse(&context, edit, view, mouse, seconds);
        lay_out_edit(&context, edit, view, mouse);
        nk_end(&context);
        nk__begin(&context);
        nk_clear(&context);
    }

    // The left edge of a character's cell, and the middle of its row.
    struct nk_vec2 place(int line, float column)
    {
        return nk_vec2(view.area.x + column * glyph,
                       view.area.y + (static_cast<float>(line) + 0.5F) * row);
    }
    void move(struct nk_vec2 to)
    {
        queue_input(*queue, {input_kind::motion, false, false, 0, to.x, to.y});
    }
    void button(bool down, struct nk_vec2 at, bool shift = false, bool again = false)
    {
        queue_input(*queue,
                    {input_kind::button, down, shift, NK_BUTTON_LEFT, at.x, at.y, false, again});
    }
    void lay_out_all()
    {
        do
            lay_out();
        while (has_input(*queue));
    }
    void click(struct nk_vec2 at, int times = 1, bool shift = false)
    {
        move(at);
        for (int i = 0; i < times; ++i) {
            button(true, at, shift, i > 0);
            button(false, at, shift);
        }
        lay_out_all();
    }
    void scroll(float x, float y, bool shift = false)
    {
        queue_input(*queue, {input_kind::scroll, false, shift, 0, x, y});
        lay_out_all();
    }

    std::string selected() const
    {
        const std::string_view text(memory, edit.string.buffer.allocated);
        const int first = std::min(edit.select_start, edit.select_end);
        const int last = std::max(edit.select_start, edit.select_end);
        const std::size_t start = character_offset(text, first);
        return std::string(text.substr(start, character_offset(text, last) - start));
    }

    static std::string numbered_lines(int count)
    {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += std::to_string(1000 + i) + '\n';
        return text;
    }

    static constexpr float box_height = 200;
    char memory[source_capacity] = {};
    nk_context context = {};
    nk_user_font font = rig::even_font();
    nk_text_edit edit = {};
    editor_view view = {};
    editor_mouse mouse = {};
    std::unique_ptr<input_queue> queue = std::make_unique<input_queue>();
};

TEST_F(EditorMouse, AClickPutsTheCursorBetweenTheNearestCharacters)
{
    set("one\n\u00B5\u00B5\u00B5\u00B5");
    lay_out();
    click(place(1, 2.4F));
    EXPECT_EQ(edit.cursor, 6);
    click(place(1, 2.6F));
    EXPECT_EQ(edit.cursor, 7);
    click(place(0, 20));
    EXPECT_EQ(edit.cursor, 3) << "no further than the line's end";
    EXPECT_EQ(edit.active, 1);
}

TEST_F(EditorMouse, AClickInThePaddingIsOneOnTheNearestCharacter)
{
    set("one\ntwo\nthree");
    lay_out();
    const struct nk_rect box = view.bounds;
    click(nk_vec2(box.x + 1, place(1, 0).y));
    EXPECT_EQ(edit.cursor, 4) << "left of the second line";
    click(nk_vec2(place(0, 2).x, box.y + 1));
    EXPECT_EQ(edit.cursor, 2) << "above the first line";
    click(nk_vec2(place(0, 3).x, box.y + box.h - 2));
    EXPECT_EQ(edit.cursor, 11) << "below the last line";
    click(nk_vec2(box.x + box.w - 2, place(1, 0).y));
    EXPECT_EQ(edit.cursor, 7) << "where no scrollbar is";
}

TEST_F(EditorMouse, TypingAfterAClickInThePaddingDoesNotReplaceTheOldSelection)
{
    set("one two");
    lay_out();
    click(place(0, 1), 2);
    ASSERT_EQ(selected(), "one");
    click(nk_vec2(view.bounds.x + 1, place(0, 0).y));
    EXPECT_EQ(selected(), "");
}

TEST_F(EditorMouse, ADoubleClickSelectsAWordAndATripleOneALine)
{
    set("mark(x1, \u00B5m)\r\nnext");
    lay_out();
    click(place(0, 1), 2);
    EXPECT_EQ(selected(), "mark");
    click(place(0, 9.9F), 2);
    EXPECT_EQ(selected(), "\u00B5m");
    click(place(0, 30), 2);
    EXPECT_EQ(selected(), ")") << "the last of the line";
    click(place(0, 1), 3);
    EXPECT_EQ(selected(), "mark(x1, \u00B5m)");
    EXPECT_EQ(edit.cursor, 12);
    click(place(0, 1), 4);
    EXPECT_EQ(selected(), "") << "a fourth one begins anew";
}

TEST_F(EditorMouse, ADoubleClickThatBeganElsewhereIsAClick)
{
    set("one");
    lay_out();
    const struct nk_vec2 outside = nk_vec2(view.bounds.x + 10, view.bounds.y + 300);
    click(outside);
    button(true, place(0, 1), false, true);
    button(false, place(0, 1));
    lay_out_all();
    EXPECT_EQ(selected(), "");
}

TEST_F(EditorMouse, ADragSelectsInUnitsOfWhatThePressSelected)
{
    set("one two three\nfour");
    lay_out();
    move(place(0, 5));
    button(true, place(0, 5));
    move(place(0, 9));
    lay_out_all();
    EXPECT_EQ(selected(), "wo t");
    move(place(0, 2));
    lay_out_all();
    EXPECT_EQ(selected(), "e t") << "to the other side of where it began";
    EXPECT_EQ(edit.cursor, 2);
    button(false, place(0, 2));
    lay_out_all();
    click(place(0, 5));
    button(true, place(0, 5), false, true);
    move(place(0, 9));
    lay_out_all();
    EXPECT_EQ(selected(), "two three");
    move(place(0, 1));
    lay_out_all();
    EXPECT_EQ(selected(), "one two");
    EXPECT_EQ(edit.cursor, 0);
}

TEST_F(EditorMouse, AClickWithShiftExtendsTheSelection)
{
    set("one two three");
    lay_out();
    click(place(0, 4));
    click(place(0, 7), 1, true);
    EXPECT_EQ(selected(), "two");
    click(place(0, 13), 1, true);
    EXPECT_EQ(selected(), "two three");
    click(place(0, 0), 1, true);
    EXPECT_EQ(selected(), "one ") << "around where it began";
}

TEST_F(EditorMouse, AKeyMovesTheCursorWhileTheButtonIsHeldOnTheSpot)
{
    set("one two");
    lay_out();
    move(place(0, 5));
    button(true, place(0, 5));
    lay_out_all();
    edit.cursor = edit.select_start = edit.select_end = 1;
    lay_out(0.1F);
    EXPECT_EQ(edit.cursor, 1);
}

TEST_F(EditorMouse, TheRightButtonLeavesCursorAndSelection)
{
    set("one two three");
    lay_out();
    click(place(0, 5));
    const struct nk_vec2 at = place(0, 9);
    queue_input(*queue, {input_kind::button, true, false, NK_BUTTON_RIGHT, at.x, at.y});
    lay_out_all();
    EXPECT_EQ(edit.cursor, 5);
    EXPECT_EQ(selected(), "");
    EXPECT_TRUE(nk_input_is_mouse_pressed(&context.input, NK_BUTTON_RIGHT)) << "others see it";
}

TEST_F(EditorMouse, AReleaseEndsTheDrag)
{
    set("one two");
    lay_out();
    click(place(0, 1));
    move(place(0, 6));
    lay_out_all();
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(edit.cursor, 1);
}

TEST_F(EditorMouse, ADragBeyondTheEdgeScrollsWhileThePointerStandsStill)
{
    set(numbered_lines(500));
    lay_out();
    move(place(0, 0));
    button(true, place(0, 0));
    move(nk_vec2(place(0, 2).x, view.area.y + view.area.h + 20));
    lay_out_all();
    lay_out(0.1F);
    const float first = edit.scrollbar.y;
    EXPECT_GT(first, 0);
    const int selected_to = edit.cursor;
    for (int i = 0; i < 10; ++i)
        lay_out(0.1F);
    EXPECT_NEAR(edit.scrollbar.y, 11 * first, 1);
    EXPECT_GT(edit.cursor, selected_to + 20);
    EXPECT_EQ(edit.select_start, 0);
    EXPECT_EQ(edit.cursor % 5, 2) << "in the pointer's column";
}

TEST_F(EditorMouse, ADragScrollsFasterFurtherOutAndBackAboveTheBox)
{
    set(numbered_lines(500));
    lay_out();
    edit.scrollbar.y = 100 * row;
    move(place(0, 0));
    button(true, place(0, 0));
    lay_out_all();
    const auto scrolled_at = [&](float y) {
        const float before = edit.scrollbar.y;
        move(nk_vec2(place(0, 0).x, y));
        lay_out(0.1F);
        return edit.scrollbar.y - before;
    };
    const float bottom = view.area.y + view.area.h;
    const float near = scrolled_at(bottom + 5);
    const float far = scrolled_at(bottom + 100);
    // Four rows a second, and twelve pixels more for each pixel outside.
    EXPECT_NEAR(near, 0.1F * (4 * row + 12 * 5), 0.01);
    EXPECT_NEAR(far, 0.1F * (4 * row + 12 * 100), 0.01);
    EXPECT_NEAR(scrolled_at(view.area.y - 5), -near, 0.01);
    EXPECT_EQ(scrolled_at(view.area.y + 50), 0) << "not while it is inside";
}

TEST_F(EditorMouse, ADragBeyondTheTextsEndStopsThere)
{
    set(numbered_lines(30));
    lay_out();
    move(place(0, 0));
    button(true, place(0, 0));
    move(nk_vec2(place(0, 2).x, 1000));
    for (int i = 0; i < 20; ++i)
        lay_out(0.1F);
    EXPECT_EQ(edit.cursor, 150);
    EXPECT_FLOAT_EQ(edit.scrollbar.y, 31 * row - view.area.h);
}

TEST_F(EditorMouse, ADragBeyondTheRightEdgeScrollsSideways)
{
    set(std::string(300, 'x'));
    lay_out();
    move(place(0, 0));
    button(true, place(0, 0));
    move(nk_vec2(view.area.x + view.area.w + 30, place(0, 0).y));
    for (int i = 0; i < 100; ++i)
        lay_out(0.1F);
    EXPECT_GT(edit.scrollbar.x, 0);
    EXPECT_EQ(edit.cursor, 300);
}

TEST_F(EditorMouse, TheWheelScrollsWhatThePointerIsOver)
{
    set(numbered_lines(500));
    lay_out();
    move(place(0, 0));
    scroll(0, -2);
    EXPECT_EQ(edit.scrollbar.y, 6 * row) << "three rows a notch";
    scroll(0, 1);
    EXPECT_EQ(edit.scrollbar.y, 3 * row);
    scroll(0, 9);
    EXPECT_EQ(edit.scrollbar.y, 0);
    scroll(0, -1000);
    EXPECT_FLOAT_EQ(edit.scrollbar.y, 501 * row - view.area.h);
    move(nk_vec2(view.bounds.x + 10, view.bounds.y + 300));
    scroll(0, 1);
    EXPECT_FLOAT_EQ(edit.scrollbar.y, 501 * row - view.area.h) << "not from outside";
    EXPECT_EQ(edit.cursor, 0);
}

TEST_F(EditorMouse, TheWheelScrollsSidewaysWithShiftOrByItself)
{
    set(std::string(300, 'x') + '\n' + numbered_lines(500));
    lay_out();
    move(place(0, 0));
    scroll(0, -1, true);
    EXPECT_EQ(edit.scrollbar.x, 3 * row);
    EXPECT_EQ(edit.scrollbar.y, 0) << "and not down as well";
    scroll(-1, 0);
    EXPECT_EQ(edit.scrollbar.x, 6 * row);
    scroll(0, 100, true);
    EXPECT_EQ(edit.scrollbar.x, 0);
    scroll(0, -1000, true);
    const float most = edit.scrollbar.x;
    EXPECT_GE(most, 300 * glyph - view.area.w);
    EXPECT_LT(most, 301 * glyph - view.area.w);
}

TEST_F(EditorMouse, AViewIsScrolledByAsLittleAsAPixelAndAlongOneAxisAlone)
{
    set(std::string(300, 'x') + '\n' + numbered_lines(500));
    lay_out();
    EXPECT_TRUE(scroll_by(edit, view, font, nk_vec2(1, 0)));
    EXPECT_EQ(edit.scrollbar.x, 1);
    EXPECT_EQ(edit.scrollbar.y, 0);
    EXPECT_TRUE(scroll_by(edit, view, font, nk_vec2(0, 1)));
    EXPECT_EQ(edit.scrollbar.y, 1);
    EXPECT_EQ(edit.scrollbar.x, 1);
    edit.scrollbar.x = 5000; // as it may stay when the longest line is cut
    EXPECT_FALSE(scroll_by(edit, view, font, nk_vec2(0, 0)));
    EXPECT_EQ(edit.scrollbar.x, 5000);
}

TEST_F(EditorMouse, ATextThatIsSeenWholeDoesNotScroll)
{
    set("one\ntwo");
    lay_out();
    move(place(0, 0));
    scroll(0, -5);
    scroll(0, -5, true);
    EXPECT_EQ(edit.scrollbar.x, 0);
    EXPECT_EQ(edit.scrollbar.y, 0);
}

TEST_F(EditorMouse, TheScrollbarIsDraggedWithoutSelectingAnything)
{
    set(numbered_lines(500));
    lay_out();
    click(place(2, 1));
    const struct nk_vec2 bar = nk_vec2(view.scrollbar_left + 4, view.area.y + 2);
    move(bar);
    button(true, bar);
    lay_out_all();
    move(nk_vec2(place(0, 3).x, bar.y + 50)); // the hand strays over the text
    lay_out_all();
    EXPECT_GT(edit.scrollbar.y, 10 * row);
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(edit.cursor, 11);
}

} // namespace
