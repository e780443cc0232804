#include "jobs/output_box.hpp"

#include <gtest/gtest.h>

namespace
{

using vimbo::named_line;

TEST(NamedLine, IsTheNumberBetweenTwoColons)
{
    EXPECT_EQ(named_line("source:12: unexpected symbol"), 12);
    EXPECT_EQ(named_line(":1:"), 1);
    EXPECT_EQ(named_line("mero: a.lua:3: in b.lua:7: what"), 3) << "the first";
    EXPECT_EQ(named_line("at 10:20:30:"), 20) << "a time is taken for one";
}

TEST(NamedLine, IsNoneWithoutOne)
{
    for (const char *line : {"", ":", "::", "12:", ":12", "a:b:", "a:1b:", "a: 1:", ":0:"})
        EXPECT_EQ(named_line(line), 0) << line;
}

TEST(NamedLine, IsNotSearchedForBeyondAnyTextsLines)
{
    EXPECT_EQ(named_line(":99999999999999999999999:"), vimbo::most_named_line);
    EXPECT_EQ(named_line(":70000:"), 70000);
}

} // namespace
