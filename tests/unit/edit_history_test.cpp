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
    // The text becomes another one, as an edit would have it.
    void edit(const std::string &after)
    {
        note_change(*history, text, after);
        text = after;
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

    void type(const std::string &characters)
    {
        for (const char c : characters)
            edit(text + c);
    }

    std::unique_ptr<edit_history> history = std::make_unique<edit_history>();
    std::string text;

private:
    void apply(const text_change &change)
    {
        text.replace(change.position, change.removed, change.inserted);
    }
};

TEST_F(History, HasNothingToUndoAtFirst)
{
    EXPECT_FALSE(undo());
    EXPECT_FALSE(redo());
}

TEST_F(History, BringsAWholeDeletedSourceBack)
{
    const std::string source(65536, 'x');
    edit(source);
    edit("");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, source);
    ASSERT_TRUE(redo());
    EXPECT_EQ(text, "");
}

TEST_F(History, TakesTypedTextBackAWordAtATime)
{
    type("one two\nthree");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, "one two\n");
    ASSERT_TRUE(undo());
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, "one ");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, "");
    EXPECT_FALSE(undo());
}

TEST_F(History, TakesWhatWasTypedIntoTheMiddleBack)
{
    edit("one three");
    edit("one x three");
    ASSERT_TRUE(undo());
    EXPECT_EQ(text, "one three");
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

TEST_F(History, KeepsCharactersOfSeveralBytesWhole)
{
    edit("aµm");
    edit("a¶m"); // the second byte of the character differs
    text_change change = {};
    ASSERT_TRUE(take_undo(*history, change));
    EXPECT_EQ(change.position, 1U) << "where the cursor goes";
    EXPECT_EQ(change.removed, 2U);
    EXPECT_EQ(change.inserted, "µ");
    ASSERT_TRUE(take_redo(*history, change));
    EXPECT_EQ(change.position, 1U);
    EXPECT_EQ(change.inserted, "¶");
}

TEST_F(History, DropsItsOldestRecordsWhenItIsFull)
{
    std::vector<std::string> texts = {""};
    for (int i = 0; i < 40; ++i) {
        edit(std::string(60000, static_cast<char>('a' + i % 26)));
        texts.push_back(text);
    }
    std::size_t undone = 0;
    while (undo()) {
        ++undone;
        ASSERT_LT(undone, texts.size()) << "more is undone than was done";
        ASSERT_EQ(text, texts[texts.size() - 1 - undone]);
    }
    EXPECT_GE(undone, 6U);
    EXPECT_LT(undone, 40U);
}

TEST_F(History, UndoesAndRedoesThousandsOfRandomEditsExactly)
{
    std::mt19937 random(7);
    std::vector<std::string> texts = {""};
    for (int i = 0; i < 1500; ++i) {
        std::string next = text;
        const std::size_t at = random() % (next.size() + 1);
        next.replace(at, random() % 4, std::string(random() % 5, static_cast<char>('a' + i % 26)));
        edit(next);
        texts.push_back(text);
    }
    // What was taken for typing goes back several texts at a time.
    const std::string last = text;
    std::size_t undone = 0;
    for (auto seen = texts.rbegin(); undo(); ++undone) {
        seen = std::find(seen, texts.rend(), text);
        ASSERT_TRUE(seen != texts.rend()) << "a text that never was, at undo " << undone;
    }
    EXPECT_EQ(text, "");
    EXPECT_GT(undone, 1000U);
    for (auto seen = texts.begin(); redo();) {
        seen = std::find(seen, texts.end(), text);
        ASSERT_TRUE(seen != texts.end());
    }
    EXPECT_TRUE(text == last);
}

TEST_F(History, HoldsAChangeOfExactlyItsCapacity)
{
    edit(std::string(history_bytes, 'x'));
    ASSERT_TRUE(undo()) << "a change that just fits was not noted";
    EXPECT_EQ(text, "");
    ASSERT_TRUE(redo());
    EXPECT_EQ(text.size(), history_bytes);
    edit(text.substr(1)); // one byte more than it has room for
    ASSERT_TRUE(undo());
    EXPECT_EQ(text.size(), history_bytes);
    EXPECT_FALSE(undo()) << "there is room for both";
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
        edit(i % 2 == 0 ? "a" : "b");
    EXPECT_EQ(undo_all(), history_records);
    EXPECT_EQ(text, "");
    while (redo()) {
    }
    edit("one more");
    EXPECT_EQ(undo_all(), history_records - history_records / 4) << "a quarter makes room";
}

TEST_F(History, IsClearedByAChangeThatItHasNoRoomFor)
{
    edit("one");
    edit(std::string(vimbo::history_bytes, 'x'));
    EXPECT_FALSE(undo());
    EXPECT_FALSE(redo());
    edit("two");
    EXPECT_FALSE(undo()) << "what was too large comes back no more";
}

} // namespace
