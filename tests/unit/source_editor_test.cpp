#include "tests/support/panel_rig.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/texts.hpp"
#include "ui/fixed_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include <string>

namespace
{

using namespace rig;

class SourceEditor : public testing::Test
{
protected:
    void load(const std::string &text)
    {
        write_file(place.file("source"), text);
        vimbo::load_source(editor(), place.file("source").c_str());
        panels.frame();
    }
    // The beginning of the first line.
    void click_into()
    {
        panels.frame();
        const point toggle = *panels.find("|");
        panels.click({14, 52});
        ASSERT_LT(14, toggle.x);
    }
    void press(nk_keys key)
    {
        panels.key(key);
        panels.frame();
        panels.frame();
    }
    void type(const std::string &text)
    {
        panels.type(text);
        panels.frame();
    }

    // Where the editor lies: the one large box in an edit's colour.
    struct nk_rect box()
    {
        const struct nk_color colour = panels.app().frame.context->style.edit.normal.data.color;
        for (const drawn_rectangle &filled : panels.rectangles())
            if (std::memcmp(&filled.colour, &colour, sizeof colour) == 0 && filled.bounds.h > 200)
                return filled.bounds;
        ADD_FAILURE() << "no editor is drawn";
        return {};
    }
    // The line that reads so lies within the box, in all its height.
    void expect_whole_line(const std::string &line)
    {
        const struct nk_rect area = box();
        const auto &texts = panels.texts();
        const auto drawn = std::ranges::find(texts, line, &drawn_text::text);
        ASSERT_NE(drawn, texts.end()) << '"' << line << "\" is not drawn";
        EXPECT_GE(drawn->bounds.y, area.y) << '"' << line << "\" begins above the editor";
        EXPECT_LE(drawn->bounds.y + drawn->bounds.h, area.y + area.h)
            << '"' << line << "\" ends below the editor";
    }
    // Less than a row that is not seen whole, and the frame, lies below it.
    void expect_no_row_below(const std::string &line)
    {
        const struct nk_rect area = box();
        const auto drawn = std::ranges::find(panels.texts(), line, &drawn_text::text)->bounds;
        const nk_style &style = panels.app().frame.context->style;
        EXPECT_LT(area.y + area.h - drawn.y - drawn.h,
                  2 * (style.font->height + style.edit.row_padding))
            << "rows are left below \"" << line << '"';
    }
    int cursor_row()
    {
        const std::string text = shown();
        return static_cast<int>(
            std::count(text.begin(), text.begin() + editor().source_edit.cursor, '\n'));
    }
    // "line 0" to the last one, which has no line feed.
    static std::string numbered_lines(int count)
    {
        std::string lines;
        for (int i = 0; i < count; ++i)
            lines += (i == 0 ? "line " : "\nline ") + std::to_string(i);
        return lines;
    }

    vimbo::source_editor_state &editor()
    {
        return panels.app().editor;
    }
    // All bytes that the editor holds, those below its end mark included.
    std::string shown()
    {
        std::string text(editor().source_text, editor().source_edit.string.buffer.allocated);
        if (static_cast<std::size_t>(editor().covered_index) < text.size())
            text[static_cast<std::size_t>(editor().covered_index)] = editor().covered_byte;
        return text;
    }
    // What would be saved or evaluated.
    std::string saved()
    {
        return editor().source_text;
    }

    panel_rig panels;
    scratch_directory place;
};

TEST_F(SourceEditor, TakesASourceWithItsLineFeedsBeforeItWasEverClicked)
{
    load("one\ntwo\n");
    EXPECT_EQ(saved(), "one\ntwo\n");
}

TEST_F(SourceEditor, HoldsASourceOfExactlyItsCapacity)
{
    for (const std::size_t size : {65535U, 65536U, 65537U}) {
        load(std::string(size, 'x'));
        EXPECT_TRUE(same_text(saved(), std::string(std::min<std::size_t>(size, 65536), 'x')));
    }
}

TEST_F(SourceEditor, GoesToALineWhateverLiesBeforeIt)
{
    for (const std::string before : {"", "\n", "\n\n", "one\n", "\n\u00B5\n"}) {
        load(before + "wanted\nnext");
        const auto lines = static_cast<int>(std::ranges::count(before, '\n'));
        vimbo::show_line(editor(), lines + 1);
        panels.frame();
        type("X");
        EXPECT_EQ(saved().substr(0, before.size() + 7), before + "Xwanted");
    }
}

TEST_F(SourceEditor, GoesDownFromALineThatWasAskedForInItsFirstColumn)
{
    load("12345678\n12345678\nwanted\nnext");
    click_into();
    press(NK_KEY_TEXT_LINE_END);
    press(NK_KEY_DOWN);
    vimbo::show_line(editor(), 3);
    panels.frame();
    press(NK_KEY_DOWN);
    type("X");
    EXPECT_EQ(saved(), "12345678\n12345678\nwanted\nXnext");
}

TEST_F(SourceEditor, StopsAtTheFirstZeroByte)
{
    load(std::string("one\0two", 7));
    EXPECT_EQ(saved(), "one");
}

TEST_F(SourceEditor, BringsTheLastSourceAgainWhenAFileCannotBeOpened)
{
    load("one");
    vimbo::load_source(editor(), place.file("missing").c_str());
    panels.frame();
    EXPECT_EQ(saved(), "one");
}

TEST_F(SourceEditor, CutsAsManyBytesOffASavedTextAsItHasMoreThanCharacters)
{
    load("µm and µm");
    EXPECT_EQ(saved(), std::string("µm and µm").substr(0, 9));
}

TEST_F(SourceEditor, GoesOnWithAWholeTextAfterTheCut)
{
    load("µm");
    click_into();
    type("µ");
    type("x");
    EXPECT_EQ(shown(), "µxµm");
    EXPECT_EQ(saved(), std::string("µxµm").substr(0, 4));
}

TEST_F(SourceEditor, UndoesADeletionOfEverything)
{
    const std::string source(60000, 'x');
    load(source);
    click_into();
    press(NK_KEY_TEXT_SELECT_ALL);
    press(NK_KEY_DEL);
    EXPECT_EQ(saved(), "");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_TRUE(same_text(saved(), source));
    press(NK_KEY_TEXT_REDO);
    EXPECT_EQ(saved(), "");
}

TEST_F(SourceEditor, TakesALoadedSourceBackInOneStepAndThenItsFormerEdits)
{
    load("\u00B5\u00B5 one");
    click_into();
    type("x");
    load("two");
    click_into();
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(shown(), "x\u00B5\u00B5 one") << "what its end mark covered included";
    EXPECT_EQ(editor().source_edit.cursor, 1);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(shown(), "\u00B5\u00B5 one");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(shown(), "\u00B5\u00B5 one") << "nothing was there before it";
    press(NK_KEY_TEXT_REDO);
    press(NK_KEY_TEXT_REDO);
    EXPECT_EQ(shown(), "two");
}

TEST_F(SourceEditor, KeepsItsHistoryThroughSixFullSources)
{
    for (char c = 'a'; c < 'g'; ++c)
        load(std::string(65536, c));
    click_into();
    for (char c = 'e'; c >= 'a'; --c) {
        press(NK_KEY_TEXT_UNDO);
        EXPECT_EQ(saved(), std::string(65536, c)) << c;
    }
}

TEST_F(SourceEditor, KeepsItsViewWhenTextIsCopiedOrSelectedOutOfSight)
{
    std::string lines;
    for (int i = 0; i < 500; ++i)
        lines += "line\n";
    load(lines);
    click_into();
    editor().source_edit.scrollbar.y = 999;
    for (const nk_keys key : {NK_KEY_TEXT_SELECT_ALL, NK_KEY_COPY}) {
        press(key);
        EXPECT_EQ(editor().source_edit.scrollbar.y, 999) << key;
    }
    press(NK_KEY_TEXT_START);
    EXPECT_EQ(editor().source_edit.scrollbar.y, 0);
    editor().source_edit.scrollbar.y = 999;
    press(NK_KEY_TEXT_START);
    EXPECT_EQ(editor().source_edit.scrollbar.y, 0) << "though the cursor was there already";
}

TEST_F(SourceEditor, TakesNoKeysWhileAListIsOpen)
{
    load("one");
    click_into();
    panels.click("0");
    type("x");
    press(NK_KEY_DEL);
    EXPECT_EQ(saved(), "one");
}

TEST_F(SourceEditor, KeepsItsHistoryAcrossClicksElsewhere)
{
    load("one");
    click_into();
    type("x");
    panels.click("+");
    panels.click("!");
    click_into();
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(saved(), "one");
}

TEST_F(SourceEditor, KeepsItsPlaceWhenItIsClickedAgain)
{
    std::string lines;
    for (int i = 0; i < 500; ++i)
        lines += "line\n";
    load(lines);
    click_into();
    press(NK_KEY_TEXT_END);
    const float scrolled = editor().source_edit.scrollbar.y;
    EXPECT_GT(scrolled, 0);
    panels.click("+");
    panels.click("!");
    click_into();
    EXPECT_EQ(editor().source_edit.scrollbar.y, scrolled);
    EXPECT_GT(editor().source_edit.cursor, 0);
}

TEST_F(SourceEditor, ShowsTheCursorsWholeRowAtTheEdgeThatItMovesTo)
{
    load(numbered_lines(100));
    click_into();
    press(NK_KEY_TEXT_END);
    expect_whole_line("line 99");
    expect_no_row_below("line 99");
    for (int row = 98; row >= 0; --row) {
        press(NK_KEY_UP);
        expect_whole_line("line " + std::to_string(row));
    }
    for (int row = 1; row < 100; ++row) {
        press(NK_KEY_DOWN);
        expect_whole_line("line " + std::to_string(row));
    }
}

TEST_F(SourceEditor, ShowsTheCursorsWholeRowAtTheEdgeThatItJumpsTo)
{
    // With much and with little of a row to spare.
    for (const int height : {1240, 1234, 1228, 1222}) {
        panels.app().frame.window_height = height;
        load(numbered_lines(500));
        click_into();
        for (int page = 0; page < 4; ++page) {
            press(NK_KEY_SCROLL_DOWN);
            const std::string line = "line " + std::to_string(cursor_row());
            expect_whole_line(line);
            expect_no_row_below(line);
        }
        for (int page = 0; page < 3; ++page) {
            press(NK_KEY_SCROLL_UP);
            expect_whole_line("line " + std::to_string(cursor_row()));
        }
    }
}

TEST_F(SourceEditor, StaysWhereItWasScrolledToUntilTheCursorMoves)
{
    load(numbered_lines(300));
    click_into();
    press(NK_KEY_TEXT_END);
    const float at_the_end = editor().source_edit.scrollbar.y;
    EXPECT_GT(at_the_end, 0) << "the cursor is not followed";
    editor().source_edit.scrollbar.y = 40;
    for (int i = 0; i < 3; ++i)
        panels.frame();
    EXPECT_EQ(editor().source_edit.scrollbar.y, 40) << "the cursor is followed, moved or not";
    press(NK_KEY_LEFT);
    EXPECT_EQ(editor().source_edit.scrollbar.y, at_the_end);
}

TEST_F(SourceEditor, ShowsTheCursorAtOnceHoweverLongTheLine)
{
    constexpr float glyph_width = 8;
    for (const std::size_t length : {1000U, 60000U}) {
        load(std::string(length, 'x'));
        click_into();
        press(NK_KEY_TEXT_END);
        const float width = static_cast<float>(length) * glyph_width;
        const float toggle = static_cast<float>(panels.find("|")->x);
        const auto line = std::ranges::find_if(
            panels.texts(), [&](const drawn_text &text) { return text.bounds.w == width; });
        ASSERT_NE(line, panels.texts().end()) << "the line's width is cut";
        const float end = line->bounds.x + width;
        EXPECT_LT(end, toggle) << length;
        EXPECT_GT(end, toggle / 2) << length;
        press(NK_KEY_TEXT_START);
        EXPECT_EQ(editor().source_edit.scrollbar.x, 0);
    }
}

TEST_F(SourceEditor, MovesByPages)
{
    std::string lines;
    for (int i = 0; i < 500; ++i)
        lines += "line\n";
    load(lines);
    click_into();
    press(NK_KEY_SCROLL_DOWN);
    const int cursor = editor().source_edit.cursor;
    EXPECT_GT(cursor, 5 * 20);
    EXPECT_EQ(cursor % 5, 0) << "the start of a line";
    press(NK_KEY_SCROLL_UP);
    EXPECT_EQ(editor().source_edit.cursor, 0);
}

TEST_F(SourceEditor, MovesByRowsInItsColumn)
{
    load("first line\nµ\n\nthird line");
    click_into();
    for (int i = 0; i < 6; ++i)
        press(NK_KEY_RIGHT);
    const auto expect_at = [&](nk_keys key, int cursor) {
        press(key);
        EXPECT_EQ(editor().source_edit.cursor, cursor);
    };
    expect_at(NK_KEY_DOWN, 12); // behind the µ: the line is shorter
    expect_at(NK_KEY_DOWN, 13); // an empty line
    expect_at(NK_KEY_DOWN, 20); // in its old column again
    expect_at(NK_KEY_DOWN, 24); // no line is below: the text's end
    expect_at(NK_KEY_UP, 13);
    expect_at(NK_KEY_UP, 12);
    expect_at(NK_KEY_UP, 6);
    expect_at(NK_KEY_UP, 0); // no line is above
}

TEST_F(SourceEditor, MovesToTheEndsOfALine)
{
    load("one\ntwo µ\nthree");
    click_into();
    press(NK_KEY_DOWN);
    press(NK_KEY_TEXT_LINE_END);
    EXPECT_EQ(editor().source_edit.cursor, 9);
    press(NK_KEY_TEXT_LINE_END);
    EXPECT_EQ(editor().source_edit.cursor, 9) << "it is there already";
    press(NK_KEY_TEXT_LINE_START);
    EXPECT_EQ(editor().source_edit.cursor, 4);
    press(NK_KEY_TEXT_END);
    press(NK_KEY_TEXT_LINE_START);
    EXPECT_EQ(editor().source_edit.cursor, 10);
}

TEST_F(SourceEditor, MovesByWords)
{
    load("one two(µµ\u3000three");
    click_into();
    for (const int cursor : {3, 7, 10, 16, 16}) {
        press(NK_KEY_TEXT_WORD_RIGHT);
        EXPECT_EQ(editor().source_edit.cursor, cursor);
    }
    for (const int cursor : {10, 7, 3, 0, 0}) {
        press(NK_KEY_TEXT_WORD_LEFT);
        EXPECT_EQ(editor().source_edit.cursor, cursor);
    }
}

TEST_F(SourceEditor, MovesThroughOneEndlessWordToItsEnds)
{
    load(std::string(65535, 'x'));
    click_into();
    press(NK_KEY_TEXT_WORD_RIGHT);
    EXPECT_EQ(editor().source_edit.cursor, 65535);
    press(NK_KEY_UP);
    EXPECT_EQ(editor().source_edit.cursor, 0);
    press(NK_KEY_DOWN);
    press(NK_KEY_TEXT_WORD_LEFT);
    EXPECT_EQ(editor().source_edit.cursor, 0);
}

TEST_F(SourceEditor, LeavesASelectionAtTheEndThatAKeyGoesToward)
{
    for (const auto &[key, cursor] :
         {std::pair(NK_KEY_TEXT_LINE_START, 4), std::pair(NK_KEY_TEXT_LINE_END, 13),
          std::pair(NK_KEY_UP, 1), std::pair(NK_KEY_DOWN, 15), std::pair(NK_KEY_TEXT_WORD_LEFT, 5),
          std::pair(NK_KEY_TEXT_WORD_RIGHT, 9)}) {
        load("one\ntwo\nthree\nfour");
        click_into();
        editor().source_edit.select_start = 5; // in "two"
        editor().source_edit.select_end = 9;   // in "three"
        editor().source_edit.cursor = 9;
        press(key);
        EXPECT_EQ(editor().source_edit.cursor, cursor) << key;
        EXPECT_EQ(editor().source_edit.select_start, editor().source_edit.select_end) << key;
    }
}

TEST_F(SourceEditor, PastesCharactersOfSeveralBytesWhole)
{
    load("");
    click_into();
    panels.clipboard = "µm µm";
    press(NK_KEY_PASTE);
    EXPECT_EQ(shown(), "µm µm");
    EXPECT_EQ(editor().source_edit.cursor, 5);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(shown(), "");
}

TEST_F(SourceEditor, PastesWhatFits)
{
    load(std::string(65530, 'x'));
    click_into();
    panels.clipboard = "µµµµµµ";
    press(NK_KEY_PASTE);
    EXPECT_EQ(shown().size(), 65534U);
    EXPECT_EQ(shown().substr(0, 6), "µµxx");
}

TEST_F(SourceEditor, DoesNotInheritTheFocusOfTheNameFieldAfterSaveAs)
{
    load("one");
    vimbo::set_text(panels.app().bar.source_path, place.file("copy"));
    panels.click("+");
    panels.frame();
    panels.click("copy");
    panels.key(NK_KEY_ENTER);
    panels.frame();
    EXPECT_EQ(read_file(place.file("copy")), "one");
    // The very next frame: later, the toolkit would take the focus by itself.
    type("lost");
    EXPECT_EQ(saved(), "one") << "the editor took what was typed";
}

} // namespace
