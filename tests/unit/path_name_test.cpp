#include "sources/path_name.hpp"

#include <gtest/gtest.h>

#include <string>

namespace
{

using vimbo::path_name_part;
using vimbo::path_parent;

std::string name_of(const char *path)
{
    return path_name_part(path);
}

TEST(PathName, IsWhatFollowsTheLastSlash)
{
    EXPECT_EQ(name_of("./src/a.txt"), "a.txt");
    EXPECT_EQ(name_of("/a"), "a");
    EXPECT_EQ(name_of("./"), "");
}

TEST(PathName, FollowsTheLastBackslashOnlyWithoutASlash)
{
    EXPECT_EQ(name_of("C:\\src\\a.txt"), "a.txt");
    EXPECT_EQ(name_of("src/a\\b"), "a\\b");
}

TEST(PathName, WithoutASeparatorLeavesTheFirstCharacterOut)
{
    EXPECT_EQ(name_of("abc"), "bc");
    EXPECT_EQ(name_of("-"), "");
    EXPECT_EQ(name_of(""), "");
}

TEST(PathParent, IsCutAtTheSameSeparator)
{
    EXPECT_EQ(path_parent("./src/a.txt"), "./src");
    EXPECT_EQ(path_parent("./"), ".");
    EXPECT_EQ(path_parent("C:\\trays\\one"), "C:\\trays");
    EXPECT_EQ(path_parent("trays/o\\ne"), "trays");
    EXPECT_EQ(path_parent("one"), "");
    EXPECT_EQ(path_parent(""), "");
}

} // namespace
