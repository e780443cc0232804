// Text files where links, pipes and devices stand in their place.
#include "tests/unit/text_file_rig.hpp"

#include "platform/files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace rig;

TEST_F(TextFile, FailsOnAFullDisk)
{
    // A device has no room that could be reserved.
    EXPECT_EQ(vimbo::write_text_file("/dev/full", "few"), -1);
    EXPECT_EQ(vimbo::write_text_file("/dev/full", std::string(65535, 'm').c_str()), -1);
}

TEST_F(TextFile, IsWrittenThroughLinksAndKeepsItsPermissions)
{
    write_file(place.file("a"), "before");
    ASSERT_EQ(chmod(place.file("a").c_str(), 0640), 0);
    std::filesystem::create_symlink("a", place.file("link"));
    std::filesystem::create_hard_link(place.file("a"), place.file("other name"));
    EXPECT_EQ(vimbo::write_text_file(place.file("link").c_str(), "after"), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(place.file("link")));
    EXPECT_EQ(read_file(place.file("a")), "after");
    EXPECT_EQ(read_file(place.file("other name")), "after");
    struct stat status = {};
    ASSERT_EQ(stat(place.file("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(TextFile, IsNotWrittenToAPipeThatIsReadNorWaitedForThere)
{
    ASSERT_EQ(mkfifo(place.file("pipe").c_str(), 0600), 0);
    const int reader = open(place.file("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(vimbo::write_text_file(place.file("pipe").c_str(), "a"), 0);
    const std::string more_than_a_pipe_holds(1000000, 'm');
    EXPECT_EQ(vimbo::write_text_file(place.file("pipe").c_str(), more_than_a_pipe_holds.c_str()),
              -1);
    close(reader);
}

TEST_F(TextFile, ForAnotherProgramReplacesALinkInsteadOfFollowingIt)
{
    write_file(place.file("precious"), "not to be touched");
    std::filesystem::create_symlink("precious", place.file("link"));
    EXPECT_TRUE(
        vimbo::overwrite_file(place.file("link").c_str(), "text", vimbo::link_use::replaced));
    EXPECT_FALSE(std::filesystem::is_symlink(place.file("link")));
    EXPECT_EQ(read_file(place.file("link")), "text");
    EXPECT_EQ(read_file(place.file("precious")), "not to be touched");
}

} // namespace
