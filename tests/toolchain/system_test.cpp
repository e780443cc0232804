// What the tools have the system do, also where it refuses: fdopen is replaced by the
// linker.
#include "toolchain/system.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

namespace
{

bool streams_refused;

} // namespace

// The linker puts this in the place of the system's, by this name.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
FILE *__real_fdopen(int file, const char *mode);

FILE *__wrap_fdopen(int file, const char *mode)
{
    if (!streams_refused)
        return __real_fdopen(file, mode);
    errno = ENOMEM;
    return nullptr;
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace
{

TEST(UnfinishedFile, LiesBesideTheOneThatItIsToBecome)
{
    const rig::scratch_directory place;
    std::string path = place.file("0.mmv");
    FILE *file = toolchain::create_file_beside(path);
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_TRUE(path.starts_with(place.file("0.mmv") + "."));
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(UnfinishedFile, IsGoneWhereItCouldNotBeOpened)
{
    const rig::scratch_directory place;
    const std::size_t descriptors = rig::open_descriptors(getpid());
    std::string path = place.file("0.mmv");
    streams_refused = true;
    FILE *file = toolchain::create_file_beside(path);
    const int refusal = errno;
    streams_refused = false;
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(refusal, ENOMEM);
    EXPECT_EQ(path, "");
    EXPECT_TRUE(std::filesystem::is_empty(place.path())) << "a file is left behind";
    EXPECT_EQ(rig::open_descriptors(getpid()), descriptors);
}

} // namespace
