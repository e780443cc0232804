#include "platform/files.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/special_file.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace
{

using rig::scratch_directory;
using rig::write_file;

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
    const std::size_t before = rig::open_descriptors(getpid());
    std::uint64_t size = 0;
    for (const std::string &path : {place.path().string(), rig::special_file(place),
                                    place.file("missing"), std::string("/dev/null"), std::string()})
        EXPECT_EQ(vimbo::open_regular_file(path.c_str(), size), nullptr) << path;
    EXPECT_EQ(rig::open_descriptors(getpid()), before);
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
    EXPECT_FALSE(vimbo::remove_file(place.path().string().c_str()));
    EXPECT_TRUE(vimbo::path_exists(place.path().string().c_str()));
}

} // namespace
