// Trees as this system names them.
#include "tests/unit/walk_rig.hpp"

#include "platform/files.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <unistd.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>

namespace
{

using namespace rig;

TEST(WalkTree, ReportsNamesOfAnyScript)
{
    const scratch_directory place;
    for (const char *name : {"Δίσκος/盤面.lua", "with blanks/𝄞"})
        write_file(std::filesystem::path(std::u8string(
                       reinterpret_cast<const char8_t *>((place.file("") + name).c_str()))),
                   "");
    const visited seen = walk(place.path().generic_string());
    EXPECT_EQ(seen.kinds.at(place.file("") + "Δίσκος/盤面.lua"), entry_kind::file);
    EXPECT_EQ(seen.kinds.at(place.file("") + "with blanks/𝄞"), entry_kind::file);
}

TEST(WalkTree, KeepsEitherSeparatorAtTheEndSingle)
{
    const scratch_directory place;
    write_file(place.file("a"), "");
    const std::string root = place.path().generic_string();
    for (const char *end : {"\\", "/", "//", "\\/"})
        EXPECT_EQ(walk(root + end).kinds.count(root + "/a"), 1U) << end;
}

TEST(WalkTree, GoesOnInPathsThatAreLongerThanThisSystemsOwn)
{
    const scratch_directory place;
    std::string path = place.path().generic_string();
    for (int i = 0; i < 5; ++i) {
        path += '/' + std::string(90, static_cast<char>('a' + i));
        ASSERT_TRUE(vimbo::make_directory(path.c_str()));
    }
    ASSERT_TRUE(vimbo::overwrite_file((path + "/deep").c_str(), "", vimbo::link_use::followed));
    const std::size_t handles = open_descriptors(getpid());
    const visited seen = walk(place.path().generic_string());
    EXPECT_EQ(seen.order.size(), 7U);
    EXPECT_EQ(seen.kinds.at(path + "/deep"), entry_kind::file);
    EXPECT_EQ(open_descriptors(getpid()), handles);
    vimbo::remove_file((path + "/deep").c_str());
    for (int i = 0; i < 5; ++i) {
        RemoveDirectoryW(
            (L"\\\\?\\" + std::filesystem::path(path).make_preferred().wstring()).c_str());
        path.resize(path.rfind('/'));
    }
}

// scripts/test-windows brings the links, which no program here can make.
TEST(WalkTree, EndsAmongLinksThatLeadRound)
{
    const char *links = std::getenv("VIMBO_LINKS");
    if (links == nullptr)
        GTEST_SKIP() << "there are no links to be followed";
    const std::string root = std::string(links) + "/tree";
    const visited seen = walk(root);
    const auto count = [&](const std::string &name) {
        return std::ranges::count_if(seen.order, [&](const std::string &path) {
            return path.ends_with(name) && seen.kinds.at(path) == entry_kind::file;
        });
    };
    EXPECT_EQ(count("/file"), 1) << "in one directory, and behind links to it";
    EXPECT_EQ(seen.kinds.at(root + "/link to a file"), entry_kind::file);
    for (const char *name : {"/nowhere", "/itself", "/one", "/two"})
        EXPECT_EQ(count(name), 0) << name;
}

TEST(WalkTree, OfAPatternReportsNothing)
{
    const scratch_directory place;
    write_file(place.file("a/b"), "");
    EXPECT_TRUE(walk(place.file("*")).order.empty());
    EXPECT_TRUE(walk(place.file("?")).order.empty());
}

} // namespace
