#include "platform/linux/shell_quotes.hpp"

#include <gtest/gtest.h>

#include <string>

namespace
{

std::string line_of(const char *command)
{
    char line[256] = {};
    EXPECT_TRUE(vimbo::format_shell_line(command, line));
    return line;
}

TEST(ShellLine, IsTheCommandItselfWhereNothingIsQuoted)
{
    for (const char *command : {"", "mero -S /tmp//vimbo", "a $HOME `b` $(c)", "a\\\"", "a\\ b"})
        EXPECT_EQ(line_of(command), command);
}

TEST(ShellLine, KeepsPairsOfQuotes)
{
    EXPECT_EQ(line_of("mero \"a b\""), "mero \"a b\"");
    EXPECT_EQ(line_of("\"a\"\"b\""), "\"a\"\"b\"");
    EXPECT_EQ(line_of("\"it's\""), "\"it's\"");
}

TEST(ShellLine, ClosesAQuoteThatIsLeftOpen)
{
    EXPECT_EQ(line_of("plimb \"./_mosaics/3.mmv"), "plimb \"./_mosaics/3.mmv\"");
    EXPECT_EQ(line_of("\""), "\"\"");
    EXPECT_EQ(line_of("\"a\" \"b"), "\"a\" \"b\"");
    EXPECT_EQ(line_of("\"it's"), "\"it's\"");
}

TEST(ShellLine, KeepsWhatIsInDoubleQuotesLiteral)
{
    EXPECT_EQ(line_of("plimb \"a$HOME/`id`/$(id)/b\\c"),
              "plimb \"a\\$HOME/\\`id\\`/\\$(id)/b\\\\c\"");
    EXPECT_EQ(line_of("m \"a$b\" $c"), "m \"a\\$b\" $c");
    EXPECT_EQ(line_of("\"a\\\" b"), "\"a\\\\\" b") << "a backslash does not hide the quote";
    EXPECT_EQ(line_of("\"a\\"), "\"a\\\\\"");
    EXPECT_EQ(line_of("\"a!\n*~\t'#"), "\"a!\n*~\t'#\"");
}

TEST(ShellLine, LeavesSingleQuotedTextUnchanged)
{
    EXPECT_EQ(line_of("'\"' $a"), "'\"' $a");
    EXPECT_EQ(line_of("'\""), "'\"");
    EXPECT_EQ(line_of("'\\' \"$"), "'\\' \"\\$\"");
}

TEST(ShellLine, ThatDoesNotFitIsRefused)
{
    char line[8] = {};
    EXPECT_TRUE(vimbo::format_shell_line("1234567", line));
    EXPECT_FALSE(vimbo::format_shell_line("12345678", line));
    EXPECT_TRUE(vimbo::format_shell_line("12345\"", line));
    EXPECT_FALSE(vimbo::format_shell_line("123456\"", line));
    EXPECT_TRUE(vimbo::format_shell_line("1\"$$", line));
    EXPECT_FALSE(vimbo::format_shell_line("12\"$$", line));
}

} // namespace
