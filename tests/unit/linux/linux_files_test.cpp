// Files of the kinds that this system alone has, and its own places for files.
#include "platform/files.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace
{

using rig::scratch_directory;

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

TEST(NewFile, HasThePermissionsThatTheUserGrantsByDefault)
{
    using std::filesystem::perms;
    const scratch_directory place;
    const mode_t before = umask(027);
    EXPECT_TRUE(vimbo::overwrite_file(place.file("a").c_str(), "", vimbo::link_use::followed));
    EXPECT_TRUE(vimbo::overwrite_file(place.file("b").c_str(), "", vimbo::link_use::replaced));
    EXPECT_TRUE(vimbo::make_directory(place.file("c").c_str()));
    umask(before);
    constexpr perms of_a_file = perms::owner_read | perms::owner_write | perms::group_read;
    constexpr perms of_a_directory = of_a_file | perms::owner_exec | perms::group_exec;
    EXPECT_EQ(std::filesystem::status(place.file("a")).permissions(), of_a_file);
    EXPECT_EQ(std::filesystem::status(place.file("b")).permissions(), of_a_file);
    EXPECT_EQ(std::filesystem::status(place.file("c")).permissions(), of_a_directory);
}

} // namespace
