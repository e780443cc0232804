#include "ui/fixed_text.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace
{

using vimbo::append_text;
using vimbo::clear_text;
using vimbo::format_text;
using vimbo::set_text;
using vimbo::text_length;

// A buffer of eight bytes between two guards.
struct guarded {
    char before = 'g';
    char text[8] = {};
    char behind = 'g';

    void expect(const char *expected) const
    {
        EXPECT_STREQ(text, expected);
        EXPECT_EQ(before, 'g');
        EXPECT_EQ(behind, 'g');
    }
};

TEST(FixedText, TakesATextThatFillsItsBufferExactly)
{
    guarded place;
    EXPECT_TRUE(set_text(place.text, "1234567"));
    place.expect("1234567");
    EXPECT_EQ(text_length(place.text), 7U);
}

TEST(FixedText, CutsATextThatIsOneByteTooLong)
{
    guarded place;
    EXPECT_FALSE(set_text(place.text, "12345678"));
    place.expect("1234567");
}

TEST(FixedText, CutsATextThatIsFarTooLong)
{
    guarded place;
    EXPECT_FALSE(set_text(place.text, std::string(100000, 'x')));
    place.expect("xxxxxxx");
}

TEST(FixedText, TakesTheEmptyText)
{
    guarded place;
    set_text(place.text, "before");
    EXPECT_TRUE(set_text(place.text, ""));
    place.expect("");
}

TEST(FixedText, AppendsUpToItsLastByte)
{
    guarded place;
    EXPECT_TRUE(append_text(place.text, "123"));
    EXPECT_TRUE(append_text(place.text, "4567"));
    place.expect("1234567");
    EXPECT_TRUE(append_text(place.text, ""));
    EXPECT_FALSE(append_text(place.text, "8"));
    place.expect("1234567");
}

TEST(FixedText, AppendsNothingToABufferWithoutATerminator)
{
    std::array<char, 4> full = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(text_length(full), 4U);
    EXPECT_FALSE(append_text(full, "e"));
    EXPECT_TRUE(append_text(full, ""));
    EXPECT_EQ(full[3], 'd');
}

TEST(FixedText, ReportsThatAFormattedTextWasCut)
{
    guarded place;
    EXPECT_TRUE(format_text(place.text, "%d/%s", 12, "abcd"));
    place.expect("12/abcd");
    EXPECT_FALSE(format_text(place.text, "%d/%s", 12, "abcde"));
    place.expect("12/abcd");
}

TEST(FixedText, ClearsItsWholeBuffer)
{
    std::array<char, 4> full = {'a', 'b', 'c', 'd'};
    clear_text(full);
    EXPECT_EQ(full, (std::array<char, 4>{}));
}

} // namespace
