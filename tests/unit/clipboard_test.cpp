// What is put into a text from the clipboard; the clipboard itself is the window's.
#include "ui/clipboard.hpp"

#include "ui/nuklear.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{

class CopiedText : public testing::Test
{
protected:
    bool copy(const char *text, int characters)
    {
        return vimbo::take_copy(*clipboard, text, characters);
    }

    std::unique_ptr<vimbo::clipboard_state> clipboard = std::make_unique<vimbo::clipboard_state>();
};

TEST_F(CopiedText, IsCountedInCharacters)
{
    EXPECT_TRUE(copy("µm and more", 2));
    EXPECT_STREQ(clipboard->text, "µm");
}

TEST_F(CopiedText, MayBeASingleCharacter)
{
    EXPECT_TRUE(copy("µm", 1));
    EXPECT_STREQ(clipboard->text, "µ");
}

TEST_F(CopiedText, StaysWhenThereIsNothingToCopy)
{
    copy("kept", 4);
    EXPECT_FALSE(copy("other", 0));
    EXPECT_FALSE(copy(nullptr, 3));
    EXPECT_STREQ(clipboard->text, "kept");
}

TEST_F(CopiedText, HasRoomForAFullSource)
{
    const std::string source(65536, 'x');
    EXPECT_TRUE(copy((source + "yz").c_str(), 65538));
    EXPECT_TRUE(clipboard->text == source);
}

class PastedText : public testing::Test
{
protected:
    PastedText()
    {
        nk_textedit_init_fixed(&edit, memory, sizeof memory);
        edit.mode = NK_TEXT_EDIT_MODE_INSERT;
        put("abcd");
        edit.cursor = 2;
    }

    void put(const std::string &text)
    {
        nk_str_append_text_char(&edit.string, text.data(), static_cast<int>(text.size()));
    }

    std::string text() const
    {
        return {memory, edit.string.buffer.allocated};
    }

    char memory[16] = {};
    nk_text_edit edit = {};
};

TEST_F(PastedText, GoesInAtTheCursorWhichThenStandsBehindIt)
{
    vimbo::paste_text(edit, "µm");
    EXPECT_EQ(text(), "abµmcd");
    EXPECT_EQ(edit.cursor, 4);
}

TEST_F(PastedText, GoesInAtEitherEndOfTheText)
{
    edit.cursor = 0;
    vimbo::paste_text(edit, "X");
    EXPECT_EQ(text(), "Xabcd");
    edit.cursor = 5;
    vimbo::paste_text(edit, "Y");
    EXPECT_EQ(text(), "XabcdY");
    EXPECT_EQ(edit.cursor, 6);
}

TEST_F(PastedText, GoesInAtTheEndWhereTheCursorWasLeftBehindIt)
{
    edit.cursor = 99;
    vimbo::paste_text(edit, "X");
    EXPECT_EQ(text(), "abcdX");
    EXPECT_EQ(edit.cursor, 5);
}

TEST_F(PastedText, TakesThePlaceOfTheSelection)
{
    edit.select_start = 1;
    edit.select_end = 3;
    vimbo::paste_text(edit, "X");
    EXPECT_EQ(text(), "aXd");
    EXPECT_EQ(edit.cursor, 2);
}

TEST_F(PastedText, DoesNotGoIntoATextThatIsOnlyViewed)
{
    edit.mode = NK_TEXT_EDIT_MODE_VIEW;
    vimbo::paste_text(edit, "X");
    EXPECT_EQ(text(), "abcd");
}

TEST_F(PastedText, OfNothingChangesNothing)
{
    vimbo::paste_text(edit, "");
    EXPECT_EQ(text(), "abcd");
    EXPECT_EQ(edit.cursor, 2);
}

TEST_F(PastedText, IsCutWhereTheBufferEnds)
{
    vimbo::paste_text(edit, "0123456789ABCDEF");
    EXPECT_EQ(text(), "ab0123456789Acd") << "the last byte stays free";
}

TEST_F(PastedText, DoesNotGoIntoAFullBuffer)
{
    put("0123456789AB");
    ASSERT_EQ(text().size(), sizeof memory);
    vimbo::paste_text(edit, "X");
    EXPECT_EQ(text(), "abcd0123456789AB");
}

TEST_F(PastedText, LosesACharacterThatIsCutOff)
{
    vimbo::paste_text(edit, "12\xC2");
    EXPECT_EQ(text(), "ab12cd");
}

} // namespace
