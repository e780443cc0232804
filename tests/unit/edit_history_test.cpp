#include "sources/edit_history.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace vimbo;

class History : public testing::Test
{
protected:
    void change(edit_kind kind, std::size_t at, std::size_t removed, const std::string &inserted)
    {
        const std::size_t after = at + inserted.size();
        note_edit(*history,
                  {kind, at, std::string_view(text).substr(at, removed), inserted, cursor, after});
        text.replace(at, removed, inserted);
        cursor = after;
    }

    // The whole text becomes another one.
    void replace_all(const std::string &after)
    {
        change(edit_kind::whole, 0, text.size(), after);
    }

    bool undo()
    {
        text_change change = {};
        if (!take_undo(*history, change))
            return false;
        apply(change);
        return true;
    }

    bool redo()
    {
        text_change change = {};
        if (!take_redo(*history, change))
            return false;
        apply(change);
        return true;
    }

    // Each character in a layout of its own.
    void type(const std::string &characters)
    {
        for (const char c : characters)
            change(edit_kind::typed, cursor, 0, std::string(1, c));
    }

    void type_at_once(const std::string &characters)
    {
        change(edit_kind::typed, cursor, 0, characters);
    }

    void press_backspace(int times)
    {
        for (int i = 0; i < times; ++i)
            change(edit_kind::erased_before, cursor - 1, 1, "");
    }

    void press_delete(int times)
    {
        for (int i = 0; i < times; ++i)
            change(edit_kind::erased_behind, cursor, 1, "");
    }

    // The texts that undo goes through.
    std::vector<std::string> undone()
    {
        std::vector<std::string> texts;
        while (undo())
            texts.push_back(text);
        return texts;
    }

    std::unique_ptr<edit_history> history = std::make_unique<edit_history>();
    std::string text;
    std::size_t cursor = 0;

private:
    void apply(const text_change &change)
    {
        text.replace(change.position, change.removed, change.inserted);
        cursor = change.cursor;
    }
};

using texts = std::vector<std::string>;

TEST_F(History, HasNothingToUndoAtFirst)
{
    EXPECT_FALSE(undo());
    EXPECT_FALSE(redo());
}

TEST_F(History, NotesNoChangeThatChangesNothing)
{
    change(edit_kind::erased_before, 0, 0, "");
    change(edit_kind::typed, 0, 0, "");
    change(edit_kind::whole, 0, 0, "");
    EXPECT_FALSE(undo());
}

TEST_F(History, BringsAWholeDeletedSourceBack)
{
    const std::string source(65536, 'x');
    replace_all(source);
    replace_all("");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, source);
    ASSERT_TRUE(redo());
    EXPECT_EQ(text, "");
}

TEST_F(History, TakesTypedTextBackAWordAtATime)
{
    type("one two\nthree");
    EXPECT_EQ(undone(), (texts{"one two\n", "one two", "one ", ""}));
}

TEST_F(History, TakesTypedTextBackAWordAtATimeHoweverManyCharactersCameAtOnce)
{
    const std::string typed = "one two\nthree";
    for (const std::size_t first : {1U, 2U, 5U, 7U, 8U, 13U}) {
        type_at_once(typed.substr(0, first));
        if (first < typed.size())
            type_at_once(typed.substr(first));
        EXPECT_EQ(undone(), (texts{"one two\n", "one two", "one ", ""})) << first;
    }
}

TEST_F(History, TakesALongWordTypedAtOnceBackInOneStep)
{
    type_at_once(std::string(500, 'x'));
    EXPECT_EQ(undone(), texts{""});
}

TEST_F(History, TakesAPastedTextBackInOneStep)
{
    change(edit_kind::whole, 0, 0, "one two\nthree");
    type("x");
    EXPECT_EQ(undone(), (texts{"one two\nthree", ""})) << "what is typed behind it is a step";
}

TEST_F(History, TakesAWordTypedOverASelectionBackInOneStep)
{
    replace_all("one two");
    cursor = 7;
    change(edit_kind::typed, 4, 3, "n");
    type("ew");
    EXPECT_EQ(text, "one new");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, "one two");
    EXPECT_EQ(cursor, 7U);
    ASSERT_TRUE(redo());
    EXPECT_EQ(text, "one new");
    EXPECT_EQ(cursor, 7U);
}

TEST_F(History, TakesARunOfBackspacesBackAWordAtATime)
{
    replace_all("one two");
    cursor = 7;
    press_backspace(7);
    EXPECT_EQ(text, "");
    EXPECT_EQ(undone(), (texts{"one ", "one two", ""}));
    while (redo()) {
    }
    EXPECT_EQ(text, "");
}

TEST_F(History, TakesARunOfDeletesBackAWordAtATime)
{
    replace_all("one two");
    cursor = 0;
    press_delete(7);
    EXPECT_EQ(text, "");
    EXPECT_EQ(undone(), (texts{"two", "one two", ""}));
}

TEST_F(History, KeepsBackspacesDeletesAndTypingApart)
{
    type("ab");
    press_backspace(1);
    type("cd");
    cursor = 0;
    press_delete(1);
    EXPECT_EQ(text, "cd");
    EXPECT_EQ(undone(), (texts{"acd", "a", "ab", ""}));
}

TEST_F(History, KeepsBackspacesAtDifferentPlacesApart)
{
    replace_all("abcdef");
    cursor = 6;
    press_backspace(1);
    cursor = 2;
    press_backspace(1);
    EXPECT_EQ(undone(), (texts{"abcde", "abcdef", ""}));
}

TEST_F(History, PutsTheCursorWhereTheEditWas)
{
    replace_all("aaaa");
    cursor = 2;
    type("a");
    ASSERT_TRUE(undo());
    EXPECT_EQ(cursor, 2U);
    ASSERT_TRUE(redo());
    EXPECT_EQ(cursor, 3U);
    press_backspace(2);
    ASSERT_TRUE(undo());
    EXPECT_EQ(cursor, 3U);
    ASSERT_TRUE(redo());
    EXPECT_EQ(cursor, 1U);
    cursor = 0;
    press_delete(2);
    ASSERT_TRUE(undo());
    EXPECT_EQ(cursor, 0U);
}

TEST_F(History, ForgetsWhatWasUndoneWithTheNextEdit)
{
    type("one");
    ASSERT_TRUE(undo());
    type("two");
    EXPECT_FALSE(redo());
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, "");
}

TEST_F(History, DropsItsOldestRecordsWhenItIsFull)
{
    texts all = {""};
    for (int i = 0; i < 40; ++i) {
        replace_all(std::string(60000, static_cast<char>('a' + i % 26)));
        all.push_back(text);
    }
    std::size_t steps = 0;
    while (undo()) {
        ++steps;
        ASSERT_LT(steps, all.size()) << "more is undone than was done";
        ASSERT_EQ(text, all[all.size() - 1 - steps]);
    }
    EXPECT_GE(steps, 6U);
    EXPECT_LT(steps, 40U);
}

TEST_F(History, GoesOnWithARunWhenItIsFull)
{
    for (int i = 0; i < 20; ++i)
        replace_all(std::string(60000, static_cast<char>('a' + i)));
    cursor = text.size();
    const std::string last = text;
    press_backspace(59999);
    EXPECT_EQ(text, "t");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, last);
}

TEST_F(History, UndoesAndRedoesThousandsOfRandomEditsExactly)
{
    std::mt19937 random(7);
    texts all = {""};
    for (int i = 0; i < 1500; ++i) {
        constexpr edit_kind kinds[] = {edit_kind::whole, edit_kind::typed, edit_kind::erased_before,
                                       edit_kind::erased_behind};
        const edit_kind kind = kinds[random() % 4];
        const bool inserts = kind == edit_kind::whole || kind == edit_kind::typed;
        const std::size_t at =
            random() % 3 == 0 ? random() % (text.size() + 1) : std::min(cursor, text.size());
        const std::size_t removed = std::min<std::size_t>(random() % 4, text.size() - at);
        change(kind, at, removed,
               inserts ? std::string(random() % 5, static_cast<char>('a' + i % 26)) : "");
        all.push_back(text);
    }
    // A run goes back several texts at a time.
    const std::string last = text;
    std::size_t steps = 0;
    for (auto seen = all.rbegin(); undo(); ++steps) {
        seen = std::find(seen, all.rend(), text);
        ASSERT_TRUE(seen != all.rend()) << "a text that never was, at undo " << steps;
    }
    EXPECT_EQ(text, "");
    EXPECT_GT(steps, 700U);
    for (auto seen = all.begin(); redo();) {
        seen = std::find(seen, all.end(), text);
        ASSERT_TRUE(seen != all.end());
    }
    EXPECT_TRUE(text == last);
}

TEST_F(History, HoldsAChangeOfExactlyItsCapacity)
{
    replace_all(std::string(history_bytes, 'x'));
    ASSERT_TRUE(undo()) << "a change that just fits was not noted";
    EXPECT_EQ(text, "");
    ASSERT_TRUE(redo());
    EXPECT_EQ(text.size(), history_bytes);
    change(edit_kind::whole, 0, 1, ""); // one byte more than it has room for
    ASSERT_TRUE(undo());
    EXPECT_EQ(text.size(), history_bytes);
    EXPECT_FALSE(undo()) << "there is no room for both";
}

TEST_F(History, HoldsAsManyEditsAsItHasRecords)
{
    const auto undo_all = [this] {
        std::size_t count = 0;
        while (count <= 2 * history_records && undo())
            ++count;
        return count;
    };
    for (std::size_t i = 0; i < history_records; ++i)
        replace_all(i % 2 == 0 ? "a" : "b");
    EXPECT_EQ(undo_all(), history_records);
    EXPECT_EQ(text, "");
    while (redo()) {
    }
    replace_all("one more");
    EXPECT_EQ(undo_all(), history_records - history_records / 4) << "a quarter makes room";
}

TEST_F(History, IsClearedByAChangeThatItHasNoRoomFor)
{
    type("one");
    replace_all(std::string(vimbo::history_bytes, 'x'));
    EXPECT_FALSE(undo());
    EXPECT_FALSE(redo());
    replace_all("two");
    EXPECT_FALSE(undo()) << "what was too large comes back no more";
}

} // namespace
