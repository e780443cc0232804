// Trees with links and pipes in them, and walks that the system limits.
#include "tests/unit/walk_rig.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <filesystem>

namespace
{

using namespace rig;

// While it lives, only so many descriptors more can be had.
class descriptor_limit
{
public:
    explicit descriptor_limit(rlim_t more)
    {
        getrlimit(RLIMIT_NOFILE, &before);
        const int next_free = dup(0);
        close(next_free);
        const rlimit low = {static_cast<rlim_t>(next_free) + more, before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
    }
    ~descriptor_limit()
    {
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    }
    descriptor_limit(const descriptor_limit &) = delete;
    descriptor_limit &operator=(const descriptor_limit &) = delete;

private:
    rlimit before = {};
};

// A chain of directories, so many levels deep, with some files on each whose names
// make half of the levels too many to be sorted; gives how many entries that makes.
std::size_t make_chain(std::filesystem::path directory, int levels)
{
    const std::string long_end(240, 'n');
    std::size_t entries = 0;
    for (int level = 0; level < levels; ++level) {
        directory /= "d";
        std::filesystem::create_directory(directory);
        // Some of them stand before the next directory, also where the newest is read
        // first, and some behind it, and are read on the way back.
        constexpr int files = 30;
        for (int file = 0; file < files; ++file) {
            if (file == files / 2 && level + 1 < levels)
                std::filesystem::create_directory(directory / "d");
            write_file(directory / (std::to_string(file) + long_end), "");
        }
        entries += files + 1;
    }
    return entries;
}

std::filesystem::path down_the_chain(const std::filesystem::path &start, int levels)
{
    std::filesystem::path directory = start;
    for (int level = 0; level < levels; ++level)
        directory /= "d";
    return directory;
}

TEST(WalkTree, SortsLinksAsWhatTheyLeadTo)
{
    const scratch_directory place;
    for (const char *name : {"b", "a", "\xC3\xA4", "B", "d/2", "d/1", "c/1", "\xff"})
        write_file(place.file(name), "");
    ASSERT_EQ(symlink("a", place.file("link").c_str()), 0);
    std::filesystem::create_directory(place.file("bb"));
    ASSERT_EQ(symlink("bb", place.file("aa").c_str()), 0);
    const visited seen = walk(place.path().string());
    std::vector<std::string> expected = {place.path().string()};
    for (const char *name :
         {"B", "a", "b", "link", "\xC3\xA4", "\xff", "aa", "c", "c/1", "d", "d/1", "d/2"})
        expected.push_back(place.file(name));
    EXPECT_EQ(seen.order, expected);
}

TEST(WalkTree, ReportsEachOnceOfADirectoryOfMoreNamesThanItSorts)
{
    const scratch_directory place;
    constexpr std::size_t many = 10000;
    const std::string end(240, 'n');
    for (std::size_t i = 0; i < many; ++i)
        write_file(place.file(std::to_string(i) + end), "");
    for (const char *name : {"sub/2", "sub/1"})
        write_file(place.file(name), "");
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.order.size(), many + 4);
    EXPECT_EQ(seen.kinds.size(), many + 4);
    const auto sub = std::ranges::find(seen.order, place.file("sub"));
    ASSERT_GT(seen.order.end() - sub, 2);
    EXPECT_EQ(sub[1], place.file("sub/1")) << "what fits is sorted all the same";
    EXPECT_EQ(sub[2], place.file("sub/2"));
}

TEST(WalkTree, TellsLinksAndPipesApart)
{
    const scratch_directory place;
    write_file(place.file("file"), "");
    ASSERT_EQ(symlink("file", place.file("link").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", place.file("broken").c_str()), 0);
    ASSERT_EQ(mkfifo(place.file("pipe").c_str(), 0600), 0);
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.kinds.at(place.file("link")), entry_kind::file);
    EXPECT_EQ(seen.kinds.at(place.file("broken")), entry_kind::other);
    EXPECT_EQ(seen.kinds.at(place.file("pipe")), entry_kind::other);
}

TEST(WalkTree, GoesOnAfterLinksThatLeadToThemselves)
{
    const scratch_directory place;
    ASSERT_EQ(symlink("itself", place.file("itself").c_str()), 0);
    ASSERT_EQ(symlink("two", place.file("one").c_str()), 0);
    ASSERT_EQ(symlink("one", place.file("two").c_str()), 0);
    // Some stand behind the links, in whatever order the directory has them.
    for (int i = 0; i < 50; ++i)
        write_file(place.file(std::to_string(i)), "");
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.order.size(), 54U);
    for (const char *name : {"itself", "one", "two"})
        EXPECT_EQ(seen.kinds.at(place.file(name)), entry_kind::other) << name;
}

TEST(WalkTree, ComesToADirectoryOnceHoweverManyLinksLeadThere)
{
    const scratch_directory place;
    write_file(place.file("a/file"), "");
    for (const char *link : {"b", "c", "a/up", "a/self"})
        ASSERT_EQ(symlink(place.file("a").c_str(), place.file(link).c_str()), 0);
    ASSERT_EQ(symlink("..", place.file("a/parent").c_str()), 0);
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.order.size(), 3U) << "the directory, a or a link to it, and its file";
}

TEST(WalkTree, FollowsALinkAtItsStart)
{
    const scratch_directory place;
    write_file(place.file("tree/file"), "");
    ASSERT_EQ(symlink("tree", place.file("link").c_str()), 0);
    EXPECT_EQ(walk(place.file("link")).kinds.count(place.file("link/file")), 1U);
}

TEST(WalkTree, FindsAllOfATreeThatIsDeeperThanItHoldsOpen)
{
    const scratch_directory place;
    std::size_t expected = 1 + make_chain(place.path(), 600);
    // What rests for the one branch rests still when the other one needs it to.
    const std::filesystem::path branch = down_the_chain(place.path(), 400) / "branch";
    std::filesystem::create_directory(branch);
    expected += 1 + make_chain(branch, 150);
    const std::size_t descriptors = rig::open_descriptors(getpid());
    const descriptor_limit far_below_the_depth(260);
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.order.size(), expected);
    EXPECT_EQ(seen.kinds.size(), expected) << "each once";
    const std::string deepest = down_the_chain(place.path(), 600).string();
    EXPECT_EQ(seen.kinds.at(deepest), entry_kind::directory);
    EXPECT_EQ(rig::open_descriptors(getpid()), descriptors);
}

TEST(WalkTree, OfATreeThatGoesAwayMeanwhileEnds)
{
    const scratch_directory place;
    std::filesystem::create_directory(place.file("tree"));
    const std::size_t all = 2 + make_chain(place.path() / "tree", 600);
    const std::size_t descriptors = rig::open_descriptors(getpid());
    struct watched {
        const scratch_directory &place;
        std::string deepest;
        std::size_t count;
    } watch = {place, down_the_chain(place.path() / "tree", 600).string(), 0};
    vimbo::walk_tree(
        place.path().c_str(),
        [](const char *path, entry_kind /*kind*/, void *user) {
            auto &at = *static_cast<watched *>(user);
            ++at.count;
            if (path == at.deepest)
                std::filesystem::rename(at.place.file("tree"), at.place.file("elsewhere"));
        },
        &watch);
    EXPECT_GT(watch.count, 600U);
    EXPECT_LT(watch.count, all) << "nothing rested, or went away";
    EXPECT_EQ(rig::open_descriptors(getpid()), descriptors);
}

TEST(WalkTree, LeavesOutPathsThatAreTooLong)
{
    const scratch_directory place;
    const std::string before = std::filesystem::current_path().string();
    const std::string part(200, 'p');
    std::string longest = place.path().string();
    std::filesystem::current_path(longest);
    while (longest.size() + 1 + part.size() < PATH_MAX + part.size()) {
        ASSERT_EQ(mkdir(part.c_str(), 0700), 0);
        ASSERT_EQ(chdir(part.c_str()), 0);
        longest += '/' + part;
    }
    write_file("./beyond", "");
    std::filesystem::current_path(before);
    write_file(place.file("near"), "");
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.kinds.count(place.file("near")), 1U);
    EXPECT_EQ(seen.order.size(), 2 + (PATH_MAX - 1 - place.path().string().size()) / 201);
    for (const std::string &path : seen.order)
        EXPECT_LT(path.size(), PATH_MAX);
    EXPECT_TRUE(walk(longest).order.empty());
}

TEST(WalkTree, WithoutDescriptorsReportsWhatItReached)
{
    const scratch_directory place;
    write_file(place.file("1/2/3/4/5/6/file"), "");
    {
        const descriptor_limit of_none(0);
        EXPECT_EQ(walk(place.path().string()).order.size(), 1U);
    }
    const descriptor_limit of_one(1);
    EXPECT_EQ(walk(place.path().string()).order.size(), 8U);
}

TEST(WalkTree, OfMoreDirectoriesThanItRemembersEndsAllTheSame)
{
    const scratch_directory place;
    constexpr int many = 13000;
    for (int i = 0; i < many; ++i) {
        const std::string directory = place.file(std::to_string(i));
        ASSERT_EQ(mkdir(directory.c_str(), 0700), 0);
        ASSERT_EQ(symlink(".", (directory + "/again").c_str()), 0);
    }
    const visited seen = walk(place.path().string());
    EXPECT_EQ(seen.order.size(), 1U + many) << "each directory, and none through its link";
    EXPECT_EQ(seen.kinds.size(), 1U + many);
}

} // namespace
