#include "platform/files.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace
{

using bench::scratch_directory;
using bench::write_file;
using vimbo::entry_kind;

struct visited {
    std::vector<std::string> order;
    std::map<std::string, entry_kind> kinds;
};

visited walk(const std::string &directory)
{
    visited seen;
    vimbo::walk_tree(
        directory.c_str(),
        [](const char *path, entry_kind kind, void *user) {
            auto &found = *static_cast<visited *>(user);
            found.order.emplace_back(path);
            found.kinds[path] = kind;
        },
        &seen);
    return seen;
}

TEST(WalkTree, ReportsEveryEntryWithTheGivenDirectoryInFront)
{
    const scratch_directory place;
    write_file(place.file("a.txt"), "");
    write_file(place.file("sub/deep/b.txt"), "");
    const std::string root = place.path().string();
    const visited seen = walk(root);
    EXPECT_EQ(seen.order.size(), 5U);
    EXPECT_EQ(seen.kinds.at(root), entry_kind::directory);
    EXPECT_EQ(seen.kinds.at(root + "/a.txt"), entry_kind::file);
    EXPECT_EQ(seen.kinds.at(root + "/sub"), entry_kind::directory);
    EXPECT_EQ(seen.kinds.at(root + "/sub/deep/b.txt"), entry_kind::file);
}

TEST(WalkTree, ReportsADirectoryBeforeWhatItHolds)
{
    const scratch_directory place;
    write_file(place.file("sub/deep/b.txt"), "");
    const visited seen = walk(place.path().string());
    const auto position = [&](const std::string &name) {
        return std::find(seen.order.begin(), seen.order.end(), place.file(name));
    };
    EXPECT_LT(position("sub"), position("sub/deep"));
    EXPECT_LT(position("sub/deep"), position("sub/deep/b.txt"));
}

TEST(WalkTree, KeepsASeparatorAtTheEndSingle)
{
    const scratch_directory place;
    write_file(place.file("a"), "");
    EXPECT_EQ(walk(place.path().string() + "/").kinds.count(place.file("a")), 1U);
}

TEST(WalkTree, OfNothingReportsNothing)
{
    EXPECT_TRUE(walk("").order.empty());
    EXPECT_TRUE(walk("/no/such/directory").order.empty());
}

TEST(WalkTree, TellsLinksPipesAndDeepTreesApart)
{
    const scratch_directory place;
    write_file(place.file("file"), "");
    ASSERT_EQ(symlink("file", place.file("link").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", place.file("broken").c_str()), 0);
    ASSERT_EQ(mkfifo(place.file("pipe").c_str(), 0600), 0);
    std::string deep;
    for (int i = 0; i < 300; ++i)
        deep += "d/";
    write_file(place.file(deep + "bottom"), "");
    visited seen = walk(place.path().string());
    EXPECT_EQ(seen.kinds.at(place.file("link")), entry_kind::file);
    EXPECT_NE(seen.kinds[place.file("broken")], entry_kind::file);
    EXPECT_EQ(seen.kinds.at(place.file("pipe")), entry_kind::other);
    EXPECT_EQ(seen.kinds.count(place.file(deep + "bottom")), 1U);
}

TEST(RegularFile, IsOpenedWithItsSize)
{
    const scratch_directory place;
    write_file(place.file("a"), "12345");
    std::uint64_t size = 0;
    FILE *file = vimbo::open_regular_file(place.file("a").c_str(), size);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(size, 5U);
    std::fclose(file);
}

TEST(RegularFile, IsTheOnlyKindThatIsOpened)
{
    const scratch_directory place;
    ASSERT_EQ(mkfifo(place.file("pipe").c_str(), 0600), 0);
    const std::size_t before = bench::open_descriptors(getpid());
    std::uint64_t size = 0;
    for (const std::string &path : {place.path().string(), place.file("pipe"),
                                    place.file("missing"), std::string("/dev/null"), std::string()})
        EXPECT_EQ(vimbo::open_regular_file(path.c_str(), size), nullptr) << path;
    EXPECT_EQ(bench::open_descriptors(getpid()), before);
}

TEST(Directory, IsMadeOneLevelAtATime)
{
    const scratch_directory place;
    EXPECT_FALSE(vimbo::make_directory(place.file("a/b").c_str()));
    EXPECT_TRUE(vimbo::make_directory(place.file("a").c_str()));
    EXPECT_TRUE(vimbo::path_exists(place.file("a").c_str()));
    EXPECT_FALSE(vimbo::make_directory(place.file("a").c_str())) << "it is there already";
}

TEST(RemoveFile, RemovesFilesOnly)
{
    const scratch_directory place;
    write_file(place.file("a"), "");
    EXPECT_TRUE(vimbo::remove_file(place.file("a").c_str()));
    EXPECT_FALSE(vimbo::path_exists(place.file("a").c_str()));
    EXPECT_FALSE(vimbo::remove_file(place.file("a").c_str()));
    EXPECT_FALSE(vimbo::remove_file(place.path().c_str()));
    EXPECT_TRUE(vimbo::path_exists(place.path().c_str()));
}

TEST(TemporaryDirectory, EndsInASeparatorAndIsNeverCut)
{
    char path[261];
    ASSERT_TRUE(vimbo::temporary_directory(path));
    EXPECT_STREQ(path, "/tmp/");
    char exact[6];
    EXPECT_TRUE(vimbo::temporary_directory(exact));
    char small[5] = "full";
    EXPECT_FALSE(vimbo::temporary_directory(small));
    EXPECT_STREQ(small, "");
}

TEST(ExecutableDirectory, IsWhereThisTestLies)
{
    char path[4096];
    ASSERT_TRUE(vimbo::executable_directory(path));
    EXPECT_EQ(std::filesystem::path(path),
              std::filesystem::read_symlink("/proc/self/exe").parent_path());
    char small[4] = "ful";
    EXPECT_FALSE(vimbo::executable_directory(small));
    EXPECT_STREQ(small, "");
}

} // namespace
