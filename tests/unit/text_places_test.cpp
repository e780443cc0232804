#include "sources/text_places.hpp"

#include "tests/support/even_font.hpp"
#include "ui/nuklear.hpp"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace vimbo;
using rig::even_font;

TEST(TextPlaces, FindsTheStartOfALineFromAnyByteOfIt)
{
    constexpr std::string_view text = "one\n\nthree";
    for (const std::size_t from : {0U, 1U, 3U})
        EXPECT_EQ(line_start(text, from), 0U) << from;
    EXPECT_EQ(line_start(text, 4), 4U) << "an empty line";
    for (const std::size_t from : {5U, 7U, 10U})
        EXPECT_EQ(line_start(text, from), 5U) << from;
}

TEST(TextPlaces, CountsLinesUpAndDownAsFarAsThereAreLines)
{
    constexpr std::string_view text = "one\n\nthree\nfour";
    EXPECT_EQ(line_start(text, 1, 1), 4U);
    EXPECT_EQ(line_start(text, 1, 2), 5U);
    EXPECT_EQ(line_start(text, 1, 99), 11U);
    EXPECT_EQ(line_start(text, 13, -1), 5U);
    EXPECT_EQ(line_start(text, 13, -2), 4U);
    EXPECT_EQ(line_start(text, 13, -99), 0U);
}

TEST(TextPlaces, AnEmptyTextIsOneLine)
{
    for (const int lines : {-1, 0, 1})
        EXPECT_EQ(line_start("", 0, lines), 0U);
    EXPECT_EQ(line_end("", 0), 0U);
}

TEST(TextPlaces, ATextThatBeginsWithALineFeedHasAnEmptyFirstLine)
{
    EXPECT_EQ(line_start("\none", 0), 0U);
    EXPECT_EQ(line_end("\none", 0), 0U);
    EXPECT_EQ(line_start("\none", 1), 1U);
    EXPECT_EQ(line_start("\none", 3, -1), 0U);
}

TEST(TextPlaces, ALineEndsAtItsLineFeedAndTheLastOneWithTheText)
{
    EXPECT_EQ(line_end("one\ntwo", 1), 3U);
    EXPECT_EQ(line_end("one\ntwo", 3), 3U) << "it is there already";
    EXPECT_EQ(line_end("one\ntwo", 4), 7U);
}

TEST(TextPlaces, ALineEndsBeforeACarriageReturn)
{
    EXPECT_EQ(line_end("one\r\ntwo\r\n", 0), 3U);
    EXPECT_EQ(line_end("one\r\ntwo\r\n", 4), 3U) << "from behind it, too";
    EXPECT_EQ(line_end("one\r\ntwo\r\n", 5), 8U);
    EXPECT_EQ(line_end("one\r", 0), 3U);
    EXPECT_EQ(line_end("\r\n", 0), 0U);
    EXPECT_EQ(line_end("\r\n", 2), 2U);
}

TEST(TextPlaces, FindsTheWordOrTheOtherCharactersAroundAByte)
{
    const auto expect_at = [](std::size_t at, std::size_t first, std::size_t last) {
        const text_range found = word_at("one_2 \t(\u00B5m<=)\r\n\nx", at);
        EXPECT_EQ(found.first, first) << at;
        EXPECT_EQ(found.last, last) << at;
    };
    for (const std::size_t at : {0U, 4U})
        expect_at(at, 0, 5);
    for (const std::size_t at : {5U, 6U})
        expect_at(at, 5, 7);
    expect_at(7, 7, 8);
    for (const std::size_t at : {8U, 9U, 10U})
        expect_at(at, 8, 11);
    for (const std::size_t at : {11U, 13U, 14U, 15U})
        expect_at(at, 11, 14);
    expect_at(16, 16, 16);
    for (const std::size_t at : {17U, 18U})
        expect_at(at, 17, 18);
}

TEST(TextPlaces, AWordHoldsEveryByteOfItsCharactersBeyondAscii)
{
    // Their bytes lie at both ends of what is beyond ASCII.
    constexpr std::string_view text = "(a\u00C0\u00FF\U0010FFFFb)";
    for (std::size_t at = 1; at + 1 < text.size(); ++at) {
        EXPECT_EQ(word_at(text, at).first, 1U) << at;
        EXPECT_EQ(word_at(text, at).last, text.size() - 1) << at;
    }
}

TEST(TextPlaces, AnEmptyTextHasNeitherWordNorLine)
{
    EXPECT_EQ(word_at("", 0).last, 0U);
    EXPECT_EQ(line_at("", 0).last, 0U);
    EXPECT_EQ(word_step("", 0, true), 0U);
    EXPECT_EQ(word_step("", 0, false), 0U);
}

TEST(TextPlaces, ALineIsTakenWithoutItsEnd)
{
    const text_range line = line_at("one\r\ntwo\r\nthree", 6);
    EXPECT_EQ(line.first, 5U);
    EXPECT_EQ(line.last, 8U);
}

TEST(TextPlaces, AWordEndsAtABlankOrABracket)
{
    constexpr std::string_view text = "one two(\u00B5)";
    std::size_t at = 0;
    for (const std::size_t next : {3U, 7U, 10U, 11U, 11U}) {
        at = word_boundary(text, at, true);
        EXPECT_EQ(at, next);
    }
    for (const std::size_t next : {10U, 7U, 3U, 0U, 0U}) {
        at = word_boundary(text, at, false);
        EXPECT_EQ(at, next);
    }
}

TEST(TextPlaces, AWordIsNeverLeftWithinACharacter)
{
    constexpr std::string_view text = "\u21BB\u21BB";
    EXPECT_EQ(word_boundary(text, 0, true), 6U);
    EXPECT_EQ(word_boundary(text, 6, false), 0U);
    EXPECT_EQ(word_boundary("a\u3000b", 0, true), 1U) << "the wide blank";
}

TEST(TextPlaces, FindsTheCharacterAtAColumn)
{
    const nk_user_font font = even_font();
    constexpr std::string_view text = "ab\n\u00B5\u00B5d\nx";
    EXPECT_EQ(byte_at_x(text, 3, 0, font), 3U);
    EXPECT_EQ(byte_at_x(text, 3, 7.5F, font), 3U);
    EXPECT_EQ(byte_at_x(text, 3, 8, font), 5U);
    EXPECT_EQ(byte_at_x(text, 3, 16, font), 7U);
    EXPECT_EQ(byte_at_x(text, 3, 1000, font), 8U) << "no further than the line's end";
    EXPECT_EQ(text_width(font, text.substr(3, 4)), 16);
}

TEST(TextPlaces, ACharacterThatIsCutOffIsSteppedOverByteByByte)
{
    EXPECT_EQ(byte_at_x("\xE2\x86", 0, 1000, even_font()), 2U);
}

} // namespace
