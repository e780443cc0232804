// Trees as this system names them.
#include "tests/unit/walk_rig.hpp"

#include "platform/files.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <unistd.h>
#include <windows.h>

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

TEST(WalkTree, OfAPatternReportsNothing)
{
    const scratch_directory place;
    write_file(place.file("a/b"), "");
    EXPECT_TRUE(walk(place.file("*")).order.empty());
    EXPECT_TRUE(walk(place.file("?")).order.empty());
}

} // namespace
