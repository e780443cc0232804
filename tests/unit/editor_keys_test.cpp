// The keys that move the cursor, on a text without a window around it.
#include "sources/editor_keys.hpp"

#include "tests/support/even_font.hpp"
#include "ui/take_key.hpp"
#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <cstring>

namespace
{

using namespace vimbo;

class EditorKeys : public testing::Test
{
protected:
    EditorKeys()
    {
        context.style.font = &font;
    }

    void edit_text(std::string_view text)
    {
        std::memcpy(memory, text.data(), text.size());
        nk_textedit_init_fixed(&edit, memory, sizeof memory);
        edit.string.buffer.allocated = text.size();
        edit.string.len = character_count(text);
    }

    void place_cursor(int at)
    {
        edit.cursor = edit.select_start = edit.select_end = at;
    }

    // The cursor once the key was pressed.
    int press(nk_keys key, bool shift = false)
    {
        context.input.keyboard.keys[NK_KEY_SHIFT].down = shift ? nk_true : nk_false;
        context.input.keyboard.keys[key].down = nk_true;
        context.input.keyboard.keys[key].clicked = 1;
        move_by_keys(&context, edit, page);
        context.input.keyboard.keys[key].down = nk_false;
        return edit.cursor;
    }

    static constexpr int page = 2;
    char memory[64] = {};
    nk_context context = {};
    nk_user_font font = rig::even_font();
    nk_text_edit edit = {};
};

TEST_F(EditorKeys, AreTakenFromTheToolkit)
{
    context.input.keyboard.keys[NK_KEY_UP].down = nk_true;
    context.input.keyboard.keys[NK_KEY_UP].clicked = 1;
    EXPECT_TRUE(take_key(&context, NK_KEY_UP));
    EXPECT_FALSE(nk_input_is_key_pressed(&context.input, NK_KEY_UP));
    EXPECT_FALSE(take_key(&context, NK_KEY_UP));
}

TEST_F(EditorKeys, MoveNothingInAnEmptyText)
{
    edit_text("");
    for (const nk_keys key :
         {NK_KEY_UP, NK_KEY_DOWN, NK_KEY_SCROLL_UP, NK_KEY_SCROLL_DOWN, NK_KEY_TEXT_LINE_START,
          NK_KEY_TEXT_LINE_END, NK_KEY_TEXT_WORD_LEFT, NK_KEY_TEXT_WORD_RIGHT})
        EXPECT_EQ(press(key), 0) << key;
}

TEST_F(EditorKeys, MoveByAsManyRowsAsAPageHas)
{
    edit_text("a\nb\nc\nd\n");
    EXPECT_EQ(press(NK_KEY_SCROLL_DOWN), 4);
    EXPECT_EQ(press(NK_KEY_SCROLL_DOWN), 8);
    EXPECT_EQ(press(NK_KEY_SCROLL_UP), 4);
}

TEST_F(EditorKeys, GoByRowsAndKeepTheColumnThatTheyBeganIn)
{
    edit_text("first\n\u00B5\nthird");
    place_cursor(4);
    EXPECT_EQ(press(NK_KEY_DOWN), 7) << "the line is shorter";
    EXPECT_EQ(press(NK_KEY_DOWN), 12);
    EXPECT_EQ(press(NK_KEY_DOWN), 13) << "no line is below";
    EXPECT_EQ(press(NK_KEY_UP), 7);
    EXPECT_EQ(press(NK_KEY_UP), 4);
    EXPECT_EQ(press(NK_KEY_UP), 0) << "no line is above";
}

TEST_F(EditorKeys, GoToTheEndsOfALine)
{
    edit_text("one\ntwo \u00B5\nthree");
    place_cursor(5);
    EXPECT_EQ(press(NK_KEY_TEXT_LINE_END), 9);
    EXPECT_EQ(press(NK_KEY_TEXT_LINE_START), 4);
}

TEST_F(EditorKeys, SelectWithShiftFromWhereTheyBegan)
{
    edit_text("one two\nthree");
    place_cursor(4);
    press(NK_KEY_TEXT_LINE_END, true);
    EXPECT_EQ(edit.select_start, 4);
    EXPECT_EQ(edit.select_end, 7);
    press(NK_KEY_TEXT_WORD_LEFT, true);
    press(NK_KEY_TEXT_WORD_LEFT, true);
    EXPECT_EQ(edit.select_start, 4) << "the selection turns around it";
    EXPECT_EQ(edit.select_end, 0);
}

TEST_F(EditorKeys, GiveASelectionUpAtTheEndThatTheyGoToward)
{
    edit_text("one two three");
    edit.select_start = 4;
    edit.select_end = edit.cursor = 7;
    EXPECT_EQ(press(NK_KEY_TEXT_WORD_LEFT), 4);
    EXPECT_EQ(edit.select_start, edit.select_end);
    edit.select_start = 4;
    edit.select_end = edit.cursor = 7;
    EXPECT_EQ(press(NK_KEY_TEXT_WORD_RIGHT), 7);
}

TEST_F(EditorKeys, ThatContradictEachOtherMoveNothing)
{
    edit_text("one\ntwo");
    place_cursor(2);
    context.input.keyboard.keys[NK_KEY_UP].down = nk_true;
    context.input.keyboard.keys[NK_KEY_UP].clicked = 1;
    EXPECT_EQ(press(NK_KEY_DOWN), 2);
}

} // namespace
