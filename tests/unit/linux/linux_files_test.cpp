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
using rig::write_file;

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
