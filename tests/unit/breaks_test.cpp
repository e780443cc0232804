// The breaks that scripts/mutants plants.
#include "tests/mutants/breaks.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace
{

using namespace mutants;

// What the source becomes with each break of this kind.
std::vector<std::string> broken(std::string_view source, std::string_view kind)
{
    std::vector<std::string> all;
    for (const planted_break &one : breaks_in(source))
        if (one.kind == kind)
            all.push_back(with_break(source, one));
    return all;
}

using texts = std::vector<std::string>;

TEST(Breaks, MoveTheEdgesOfComparisonsAndTurnOperatorsRound)
{
    EXPECT_EQ(broken("a < b && c == d;", "edge"),
              (texts{"a <= b && c == d;", "a < b || c == d;", "a < b && c != d;"}));
    EXPECT_EQ(broken("std::vector<int> &all = list;", "edge"), texts{})
        << "neither a template's brackets nor a reference";
}

TEST(Breaks, MoveConstantsByOne)
{
    EXPECT_EQ(broken("x = 0;", "constant"), texts{"x = (0 + 1);"});
    EXPECT_EQ(broken("shown = true;", "constant"), texts{"shown = false;"});
    EXPECT_EQ(broken("// 7\n#define X 7\nname7 = \"7\";", "constant"), texts{})
        << "in comments, directives, names and texts there are no numbers";
}

TEST(Breaks, DropStatementsButNoDeclarations)
{
    EXPECT_EQ(broken("void f() { int a = b; go(a); a += 2; if (x) return; }", "statement"),
              (texts{"void f() { int a = b; (void)0; a += 2; if (x) return; }",
                     "void f() { int a = b; go(a); (void)0; if (x) return; }"}));
    EXPECT_EQ(broken("{ std::size_t at = 0; }", "statement"), texts{});
}

TEST(Breaks, NegateConditions)
{
    EXPECT_EQ(broken("if (a || b) c();", "condition"), texts{"if (!(a || b)) c();"});
    EXPECT_EQ(broken("if (const int a = b) c();", "condition"), texts{});
}

TEST(Breaks, SwapNeighbouringArguments)
{
    EXPECT_EQ(broken("f(a, g(b, c), a);", "arguments"),
              (texts{"f(g(b, c), a, a);", "f(a, a, g(b, c));", "f(a, g(c, b), a);"}));
    EXPECT_EQ(broken("f(a, a);", "arguments"), texts{});
}

TEST(Breaks, ReturnTheContrary)
{
    EXPECT_EQ(broken("return a == b;", "result"), texts{"return !(a == b);"});
    EXPECT_EQ(broken("return a;", "result"), texts{});
}

TEST(Breaks, LeaveStaticAssertionsAlone)
{
    EXPECT_TRUE(breaks_in("static_assert(sizeof a == 4, \"so\");").empty());
}

} // namespace
