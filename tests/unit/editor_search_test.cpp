#include "sources/editor_search.hpp"

#include "ui/input_queue.hpp"
#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace
{

using namespace vimbo;

class EditorSearch : public testing::Test
{
protected:
    void set(std::string_view text, int first, int last)
    {
        std::memcpy(memory, text.data(), text.size());
        nk_textedit_init_fixed(&edit, memory, sizeof memory);
        edit.string.buffer.allocated = text.size();
        edit.string.len = character_count(text);
        edit.select_start = first;
        edit.select_end = edit.cursor = last;
    }

    // The selection once F3 was pressed.
    std::pair<int, int> search(bool shift = false)
    {
        context.input.keyboard.keys[NK_KEY_SHIFT].down = shift ? nk_true : nk_false;
        context.input.keyboard.keys[find_key].down = nk_true;
        context.input.keyboard.keys[find_key].clicked = 1;
        search_by_keys(&context, edit);
        EXPECT_FALSE(nk_input_is_key_pressed(&context.input, find_key)) << "it is taken";
        return {edit.select_start, edit.select_end};
    }

    char memory[64] = {};
    nk_context context = {};
    nk_text_edit edit = {};
};

using selection = std::pair<int, int>;

TEST_F(EditorSearch, GoesFromPlaceToPlaceAndOnFromTheBeginning)
{
    set("ab \u00B5 ab ab", 0, 2);
    EXPECT_EQ(search(), selection(5, 7));
    EXPECT_EQ(edit.cursor, 7);
    EXPECT_EQ(search(), selection(8, 10));
    EXPECT_EQ(search(), selection(0, 2));
}

TEST_F(EditorSearch, HasTheCursorGoUpAndDownFromThePlaceThatItFound)
{
    set("ab \u00B5 ab ab", 0, 2);
    edit.preferred_x = 7;
    edit.has_preferred_x = 1;
    search();
    EXPECT_EQ(edit.has_preferred_x, 0) << "a column of before the search is kept";
}

TEST_F(EditorSearch, GoesBackWithShiftAndOnFromTheEnd)
{
    set("ab \u00B5 ab ab", 5, 7);
    EXPECT_EQ(search(true), selection(0, 2));
    EXPECT_EQ(search(true), selection(8, 10));
    EXPECT_EQ(search(true), selection(5, 7));
}

TEST_F(EditorSearch, TakesASelectionThatWasMadeBackward)
{
    set("ab ab", 2, 0);
    EXPECT_EQ(search(), selection(3, 5));
}

TEST_F(EditorSearch, StaysAtTheOnlyPlace)
{
    set("abc", 1, 2);
    EXPECT_EQ(search(), selection(1, 2));
    EXPECT_EQ(search(true), selection(1, 2));
}

TEST_F(EditorSearch, LooksForNothingWithoutASelection)
{
    set("ab ab", 1, 1);
    EXPECT_EQ(search(), selection(1, 1));
    EXPECT_EQ(edit.cursor, 1);
}

} // namespace
