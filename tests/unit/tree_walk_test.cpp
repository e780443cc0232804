#include "tests/unit/walk_rig.hpp"

#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using namespace rig;

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

TEST(WalkTree, ReportsFilesAndThenDirectoriesByTheirNames)
{
    const scratch_directory place;
    for (const char *name : {"b", "a", "Z", "d/2", "d/1", "c/1"})
        write_file(place.file(name), "");
    std::filesystem::create_directory(place.file("bb"));
    const visited seen = walk(place.path().string());
    std::vector<std::string> expected = {place.path().string()};
    for (const char *name : {"Z", "a", "b", "bb", "c", "c/1", "d", "d/1", "d/2"})
        expected.push_back(place.file(name));
    EXPECT_EQ(seen.order, expected);
}

TEST(WalkTree, KeepsASeparatorAtTheEndSingle)
{
    const scratch_directory place;
    std::filesystem::create_directory(place.file("sub"));
    write_file(place.file("sub/a"), "");
    const std::vector<std::string> without = walk(place.path().string()).order;
    EXPECT_EQ(without, (std::vector<std::string>{place.path().string(), place.file("sub"),
                                                 place.file("sub/a")}));
    for (const char *separators : {"/", "//", "///"})
        EXPECT_EQ(walk(place.path().string() + separators).order, without) << separators;
}

TEST(WalkTree, OfNothingReportsNothing)
{
    EXPECT_TRUE(walk("").order.empty());
    EXPECT_TRUE(walk("/no/such/directory").order.empty());
}

TEST(WalkTree, ReportsAFileThatItIsStartedAt)
{
    const scratch_directory place;
    write_file(place.file("file"), "");
    const visited seen = walk(place.file("file"));
    ASSERT_EQ(seen.order.size(), 1U);
    EXPECT_EQ(seen.kinds.at(place.file("file")), entry_kind::file);
}

} // namespace
