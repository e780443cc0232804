#include "ui/utf8.hpp"

#include <gtest/gtest.h>

#include <climits>

namespace
{

using namespace vimbo;

TEST(Utf8, ACharacterTakesOneToThreeBytes)
{
    EXPECT_EQ(character_bytes("a\u00B5"), 1U);
    EXPECT_EQ(character_bytes("\u00B5a"), 2U);
    EXPECT_EQ(character_bytes("\u21BBa"), 3U);
}

TEST(Utf8, AnEmptyTextHasNoCharacter)
{
    EXPECT_EQ(character_bytes(""), 0U);
    EXPECT_EQ(character_count(""), 0);
    EXPECT_EQ(character_offset("", 5), 0U);
}

TEST(Utf8, ACharacterThatIsCutOffCountsForNothing)
{
    EXPECT_EQ(character_bytes("\xC2"), 0U);
    EXPECT_EQ(character_count("ab\xE2\x86"), 2);
    EXPECT_EQ(character_offset("ab\xE2\x86", INT_MAX), 2U);
}

TEST(Utf8, AByteThatBeginsNoCharacterCountsAsOne)
{
    EXPECT_EQ(character_bytes("\x80z"), 1U);
    EXPECT_EQ(character_bytes("\xFFz"), 1U);
    EXPECT_EQ(character_bytes("\xE2z"), 1U);
    EXPECT_EQ(character_count("\x80\xFF\xE2z"), 4);
}

TEST(Utf8, ACharacterOfFourBytesCountsAsFourAsItDoesInTheToolkit)
{
    EXPECT_EQ(character_bytes("\U0001F600a"), 1U);
    EXPECT_EQ(character_count("\U0001F600a"), 5);
}

TEST(Utf8, FindsWhereACharacterBegins)
{
    constexpr std::string_view text = "a\u00B5\u21BBb";
    const std::size_t offsets[] = {0, 1, 3, 6, 7};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(character_offset(text, i), offsets[i]);
    EXPECT_EQ(character_offset(text, 6), text.size()) << "there are fewer";
    EXPECT_EQ(character_count(text), 4);
}

TEST(Utf8, AnyByteOfACharacterButItsFirstContinuesIt)
{
    EXPECT_FALSE(is_continuation('a'));
    EXPECT_FALSE(is_continuation('\xC2'));
    EXPECT_TRUE(is_continuation('\xB5'));
}

} // namespace
