#include "platform/linux/shell_quotes.hpp"

#include <gtest/gtest.h>

namespace
{

using vimbo::leaves_double_quote_open;

TEST(ShellQuotes, AreBalancedInAnOrdinaryCommand)
{
    EXPECT_FALSE(leaves_double_quote_open(""));
    EXPECT_FALSE(leaves_double_quote_open("mero -S /tmp//vimbo"));
    EXPECT_FALSE(leaves_double_quote_open("mero \"a b\""));
    EXPECT_FALSE(leaves_double_quote_open("\"a\"\"b\""));
}

TEST(ShellQuotes, AreLeftOpenByASingleOne)
{
    EXPECT_TRUE(leaves_double_quote_open("plimb \"./_mosaics/3.mmv"));
    EXPECT_TRUE(leaves_double_quote_open("\""));
    EXPECT_TRUE(leaves_double_quote_open("\"a\" \"b"));
}

TEST(ShellQuotes, DoNotCountBehindABackslash)
{
    EXPECT_FALSE(leaves_double_quote_open("a\\\""));
    EXPECT_TRUE(leaves_double_quote_open("\"a\\\""));
    EXPECT_TRUE(leaves_double_quote_open("\"a\\"));
    EXPECT_FALSE(leaves_double_quote_open("a\\"));
}

TEST(ShellQuotes, DoNotCountInsideTheOtherKind)
{
    EXPECT_FALSE(leaves_double_quote_open("'\"'"));
    EXPECT_FALSE(leaves_double_quote_open("'\""));
    EXPECT_TRUE(leaves_double_quote_open("\"it's"));
    EXPECT_FALSE(leaves_double_quote_open("\"it's\""));
    EXPECT_TRUE(leaves_double_quote_open("'\\' \""));
}

} // namespace
