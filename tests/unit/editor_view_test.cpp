// What of its text an edit box shows, in measures that can be worked out by hand.
#include "sources/editor_view.hpp"

#include "tests/support/even_font.hpp"
#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{

using namespace vimbo;

constexpr float glyph = rig::even_glyph;
constexpr float row = 18;

class EditorView : public testing::Test
{
protected:
    EditorView()
    {
        nk_init_default(&context, &font);
        nk_style_edit &style = context.style.edit;
        style.padding = nk_vec2(3, 5);
        style.border = 2;
        style.scrollbar_size = nk_vec2(11, 13);
        style.cursor_size = 4;
        style.row_padding = 2;
    }
    ~EditorView() override
    {
        nk_free(&context);
    }

    void set(const std::string &text)
    {
        std::memcpy(memory, text.data(), text.size());
        nk_textedit_init_fixed(&edit, memory, sizeof memory);
        edit.string.buffer.allocated = text.size();
        edit.string.len = character_count(text);
    }

    // Puts the cursor there and shows it from where the box was scrolled to.
    struct nk_vec2 shown_from(float x, float y, int cursor)
    {
        edit.scrollbar = nk_vec2(x, y);
        edit.cursor = cursor;
        show_cursor(edit, view, font);
        return edit.scrollbar;
    }

    std::size_t byte_at(float x, float y, bool between)
    {
        return byte_at_point(edit, view, font, nk_vec2(view.area.x + x, view.area.y + y), between);
    }

    char memory[4096] = {};
    nk_context context = {};
    nk_user_font font = rig::even_font();
    nk_text_edit edit = {};
    // Four rows of ten characters.
    editor_view view = {{}, {100, 200, 10 * glyph, 4 * row}, 190, row, 4};
};

TEST_F(EditorView, IsTheBoxWithoutItsPaddingBorderAndScrollbar)
{
    const editor_view seen = view_of(&context, nk_rect(10, 20, 200, 100));
    EXPECT_EQ(seen.area.x, 15);
    EXPECT_EQ(seen.area.y, 27);
    EXPECT_EQ(seen.area.w, 175) << "room for the cursor behind the text, too";
    EXPECT_EQ(seen.area.h, 86);
    EXPECT_EQ(seen.scrollbar_left, 197);
    EXPECT_EQ(seen.row_height, row);
    EXPECT_EQ(seen.rows, 4) << "the fifth is cut";
    EXPECT_EQ(view_of(&context, nk_rect(0, 0, 200, 20)).rows, 1) << "and be it cut";
}

TEST_F(EditorView, IsScrollableOnceATextHasMoreRows)
{
    set("1\n2\n3\n4");
    EXPECT_FALSE(is_scrollable(edit, view));
    set("1\n2\n3\n4\n");
    EXPECT_TRUE(is_scrollable(edit, view));
}

TEST_F(EditorView, ScrollsNoFurtherThanTheRowOfTheCursorNeeds)
{
    std::string lines;
    for (int i = 0; i < 20; ++i)
        lines += "x\n";
    set(lines);
    EXPECT_EQ(shown_from(0, 0, 20).y, 7 * row) << "the tenth is the last one";
    EXPECT_EQ(shown_from(0, 15 * row, 20).y, 10 * row) << "the tenth is the first one";
    EXPECT_EQ(shown_from(0, 8 * row + 5, 20).y, 8 * row + 5) << "it is seen already";
    EXPECT_EQ(shown_from(0, 2 * row, 2).y, row);
    EXPECT_EQ(shown_from(0, 0, 2).y, 0);
}

TEST_F(EditorView, ShowsAQuarterOfItsWidthAheadWhereTheCursorIsBesideIt)
{
    set("line\n" + std::string(50, 'x'));
    constexpr int start = 5;
    constexpr float ahead = 2.5F * glyph;
    EXPECT_EQ(shown_from(0, 0, start + 9).x, 0);
    EXPECT_EQ(shown_from(0, 0, start + 10).x, ahead);
    EXPECT_EQ(shown_from(13 * glyph, 0, start + 12).x, 12 * glyph - ahead);
    EXPECT_EQ(shown_from(13 * glyph, 0, start + 13).x, 13 * glyph);
    EXPECT_EQ(shown_from(13 * glyph, 0, start + 1).x, 0) << "not before the line's beginning";
    EXPECT_EQ(shown_from(13 * glyph + 0.5F, 0, start + 23).x, 13 * glyph + 0.5F);
    EXPECT_EQ(shown_from(13 * glyph - 0.5F, 0, start + 23).x, 23 * glyph + ahead - 10 * glyph);
}

TEST_F(EditorView, TellsTheCharacterAtAPointOrTheNearestPlaceBetweenTwo)
{
    set("abc\n\u00B5\u00B5\u00B5\u00B5");
    EXPECT_EQ(byte_at(2.4F * glyph, 0, false), 2U);
    EXPECT_EQ(byte_at(2.4F * glyph, 0, true), 2U);
    EXPECT_EQ(byte_at(2.5F * glyph, 0, true), 3U) << "in the middle, that behind it";
    EXPECT_EQ(byte_at(9 * glyph, 0, true), 3U) << "at the line's end";
    EXPECT_EQ(byte_at(1.5F * glyph, row, true), 8U) << "of two bytes each";
    EXPECT_EQ(byte_at(1.5F * glyph, row, false), 6U);
    EXPECT_EQ(byte_at(-20, -20, true), 0U);
    edit.scrollbar = nk_vec2(2 * glyph, row);
    EXPECT_EQ(byte_at(0.4F * glyph, 0, false), 8U) << "scrolled by a row and two characters";
}

} // namespace
