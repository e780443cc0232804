// What keys and characters change of a text, without a window around it.
#include "sources/editor_edits.hpp"

#include "sources/editor_keys.hpp"
#include "ui/clipboard.hpp"
#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace
{

using namespace vimbo;

class EditorEdits : public testing::Test
{
protected:
    EditorEdits()
    {
        context.clip.userdata = nk_handle_ptr(this);
        context.clip.copy = [](nk_handle user, const char *copied, int characters) {
            static_cast<EditorEdits *>(user.ptr)->clipboard = std::string(
                std::string_view(copied).substr(0, character_offset(copied, characters)));
        };
        context.clip.paste = [](nk_handle user, nk_text_edit *into) {
            paste_text(*into, static_cast<EditorEdits *>(user.ptr)->clipboard.c_str());
        };
        set("", 0);
    }

    void set(const std::string &to, int cursor)
    {
        std::memcpy(memory->text, to.data(), to.size());
        nk_textedit_init_fixed(&edit, memory->text, sizeof memory->text);
        edit.string.buffer.allocated = to.size();
        edit.string.len = character_count(to);
        edit.cursor = edit.select_start = edit.select_end = cursor;
    }

    void select(int first, int last)
    {
        edit.select_start = first;
        edit.select_end = edit.cursor = last;
    }

    void lay_out()
    {
        edit_by_keys(&context, edit, memory->history, memory->pasted);
        for (nk_key &key : context.input.keyboard.keys)
            key = {};
    }

    void hold(nk_keys key)
    {
        context.input.keyboard.keys[key].down = nk_true;
    }

    void press(nk_keys key)
    {
        hold(key);
        context.input.keyboard.keys[key].clicked = 1;
        lay_out();
    }

    void press_with_control(nk_keys key)
    {
        hold(NK_KEY_CTRL);
        press(key);
    }

    void type(const std::string &typed)
    {
        context.input.keyboard.text_len = static_cast<int>(typed.size());
        std::memcpy(context.input.keyboard.text, typed.data(), typed.size());
        lay_out();
    }

    std::string text() const
    {
        return std::string(edited_text(edit));
    }

    struct buffers {
        char text[source_capacity];
        char pasted[source_capacity];
        edit_history history;
    };
    std::unique_ptr<buffers> memory = std::make_unique<buffers>();
    nk_context context = {};
    nk_text_edit edit = {};
    std::string clipboard;
};

TEST_F(EditorEdits, TypingGoesInAtTheCursor)
{
    set("ad", 1);
    type("\u00B5c");
    EXPECT_EQ(text(), "a\u00B5cd");
    EXPECT_EQ(edit.cursor, 3);
    EXPECT_EQ(edit.string.len, 4);
    EXPECT_EQ(context.input.keyboard.text_len, 0) << "the toolkit types nothing more";
}

TEST_F(EditorEdits, TypingTakesThePlaceOfTheSelection)
{
    set("one two", 0);
    select(7, 4);
    type("x");
    EXPECT_EQ(text(), "one x");
    EXPECT_EQ(edit.select_start, edit.select_end);
}

TEST_F(EditorEdits, EnterAndTabAreTextBehindWhatWasTyped)
{
    set("", 0);
    hold(NK_KEY_ENTER);
    context.input.keyboard.keys[NK_KEY_ENTER].clicked = 1;
    hold(NK_KEY_TAB);
    context.input.keyboard.keys[NK_KEY_TAB].clicked = 1;
    type("a");
    EXPECT_EQ(text(), "a\n    ");
}

TEST_F(EditorEdits, BackspaceAndDeleteTakeAWholeCharacter)
{
    set("a\u00B5\u21BBb", 2);
    press(NK_KEY_BACKSPACE);
    EXPECT_EQ(text(), "a\u21BBb");
    EXPECT_EQ(edit.cursor, 1);
    press(NK_KEY_DEL);
    EXPECT_EQ(text(), "ab");
    EXPECT_EQ(edit.cursor, 1);
}

TEST_F(EditorEdits, BackspaceAndDeleteTakeTheSelection)
{
    for (const nk_keys key : {NK_KEY_BACKSPACE, NK_KEY_DEL}) {
        set("one two", 0);
        select(3, 7);
        press(key);
        EXPECT_EQ(text(), "one");
        EXPECT_EQ(edit.cursor, 3);
    }
}

TEST_F(EditorEdits, BackspaceAndDeleteDoNothingAtTheEndsOfTheText)
{
    set("a", 0);
    press(NK_KEY_BACKSPACE);
    press_with_control(NK_KEY_BACKSPACE);
    set("a", 1);
    press(NK_KEY_DEL);
    press_with_control(NK_KEY_DEL);
    EXPECT_EQ(text(), "a");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "a");
}

TEST_F(EditorEdits, ControlWithBackspaceTakesTheWordBeforeTheCursor)
{
    set("one two(x, y)\n  z", 17);
    for (const char *left :
         {"one two(x, y)\n  ", "one two(x, y)\n", "one two(x, y)", "one two(x, y", "one two(x, ",
          "one two(x", "one two(", "one two", "one ", ""}) {
        press_with_control(NK_KEY_BACKSPACE);
        EXPECT_EQ(text(), left);
    }
}

TEST_F(EditorEdits, ControlWithDeleteTakesTheWordBehindTheCursor)
{
    set("one two(x)\r\n  z", 0);
    for (const char *left :
         {" two(x)\r\n  z", "(x)\r\n  z", "x)\r\n  z", ")\r\n  z", "\r\n  z", "  z", ""}) {
        press_with_control(NK_KEY_DEL);
        EXPECT_EQ(text(), left);
    }
}

TEST_F(EditorEdits, AWordTakenByControlComesBackInOneStep)
{
    set("one two", 7);
    press_with_control(NK_KEY_BACKSPACE);
    press_with_control(NK_KEY_BACKSPACE);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one ");
    EXPECT_EQ(edit.cursor, 4);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one two");
    EXPECT_EQ(edit.cursor, 7);
}

TEST_F(EditorEdits, CutCopiesTheSelectionAndTakesIt)
{
    set("one \u00B5m two", 0);
    select(4, 6);
    press(NK_KEY_COPY);
    EXPECT_EQ(clipboard, "\u00B5m");
    EXPECT_EQ(text(), "one \u00B5m two");
    clipboard = "";
    press(NK_KEY_CUT);
    EXPECT_EQ(clipboard, "\u00B5m");
    EXPECT_EQ(text(), "one  two");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one \u00B5m two");
    EXPECT_EQ(edit.cursor, 6) << "where it was";
}

TEST_F(EditorEdits, CopyingNothingKeepsWhatWasCopied)
{
    set("one", 1);
    clipboard = "kept";
    press(NK_KEY_COPY);
    press(NK_KEY_CUT);
    EXPECT_EQ(clipboard, "kept");
    EXPECT_EQ(text(), "one");
}

TEST_F(EditorEdits, PastingTakesThePlaceOfTheSelectionInOneStep)
{
    set("one two", 0);
    select(4, 7);
    clipboard = "a b\nc";
    press(NK_KEY_PASTE);
    EXPECT_EQ(text(), "one a b\nc");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one two");
    press(NK_KEY_TEXT_REDO);
    EXPECT_EQ(text(), "one a b\nc");
    EXPECT_EQ(edit.cursor, 9);
}

TEST_F(EditorEdits, PastingNothingLeavesTheSelection)
{
    set("one", 0);
    select(0, 3);
    press(NK_KEY_PASTE);
    EXPECT_EQ(text(), "one");
    EXPECT_EQ(edit.select_end - edit.select_start, 3);
}

TEST_F(EditorEdits, OnlyWholeCharactersThatFitAreInserted)
{
    set(std::string(source_capacity - 4, 'x'), 0);
    type("\u00B5\u00B5");
    EXPECT_EQ(text().size(), source_capacity - 2);
    type("\u00B5");
    EXPECT_EQ(text().size(), source_capacity - 2) << "the last byte stays free";
    type("ab");
    EXPECT_EQ(text().size(), source_capacity - 1);
    type("c");
    EXPECT_EQ(text().substr(0, 4), "\u00B5a"
                                   "x");
}

TEST_F(EditorEdits, AFullTextTakesNothingButWhatReplacesASelection)
{
    set(std::string(source_capacity, 'x'), 0);
    type("a");
    EXPECT_EQ(text(), std::string(source_capacity, 'x'));
    select(0, 2);
    type("a");
    EXPECT_EQ(text().size(), source_capacity - 1);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), std::string(source_capacity, 'x')) << "its last byte included";
}

TEST_F(EditorEdits, UndoLeavesTheCursorAmongLikeCharactersWhereTheEditWas)
{
    set("aaaa", 1);
    type("a");
    type("a");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(edit.cursor, 1);
    press(NK_KEY_TEXT_REDO);
    EXPECT_EQ(edit.cursor, 3);
    press(NK_KEY_BACKSPACE);
    press(NK_KEY_BACKSPACE);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(edit.cursor, 3);
    EXPECT_EQ(text(), "aaaaaa");
}

TEST_F(EditorEdits, TheFirstTextThatIsLoadedLeavesNothingToGoBackTo)
{
    note_loaded(edit, memory->history, "one");
    set("one", 0);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one");
}

TEST_F(EditorEdits, LoadingATextIsOneStepAmongTheOthers)
{
    set("one", 3);
    type("s");
    note_loaded(edit, memory->history, "two");
    set("two", 0);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "ones");
    EXPECT_EQ(edit.cursor, 4);
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one");
    press(NK_KEY_TEXT_REDO);
    press(NK_KEY_TEXT_REDO);
    EXPECT_EQ(text(), "two");
    EXPECT_EQ(edit.cursor, 0);
}

TEST_F(EditorEdits, LoadingTheSameTextIsNoStep)
{
    set("one", 3);
    type("s");
    note_loaded(edit, memory->history, "ones");
    press(NK_KEY_TEXT_UNDO);
    EXPECT_EQ(text(), "one");
}

} // namespace
