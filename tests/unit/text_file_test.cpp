#include "sources/text_file.hpp"

#include "platform/files.hpp"
#include "tests/support/scratch.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

namespace
{

using rig::read_file;
using rig::scratch_directory;
using rig::write_file;
using vimbo::source_capacity;

struct source_buffer {
    char bytes[source_capacity];
};

class TextFile : public testing::Test
{
protected:
    std::string read(const std::string &path)
    {
        EXPECT_EQ(vimbo::read_text_file(path.c_str(), buffer->bytes), buffer->bytes);
        return {buffer->bytes, strnlen(buffer->bytes, source_capacity)};
    }

    const scratch_directory place;
    std::unique_ptr<source_buffer> buffer = std::make_unique<source_buffer>();
};

TEST_F(TextFile, IsReadWholeUpToTheCapacity)
{
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, source_capacity - 1, source_capacity}) {
        const std::string text(size, 'q');
        write_file(place.file("a"), text);
        EXPECT_EQ(read(place.file("a")), text) << size << " bytes";
    }
}

TEST_F(TextFile, IsCutAtTheCapacity)
{
    write_file(place.file("a"), std::string(source_capacity, 'q') + "more");
    EXPECT_EQ(read(place.file("a")), std::string(source_capacity, 'q'));
}

TEST_F(TextFile, LeavesNothingOfALongerFileReadBefore)
{
    write_file(place.file("long"), std::string(1000, 'l'));
    write_file(place.file("short"), "s");
    read(place.file("long"));
    EXPECT_EQ(read(place.file("short")), "s");
    EXPECT_TRUE(std::all_of(buffer->bytes + 1, buffer->bytes + source_capacity,
                            [](char byte) { return byte == '\0'; }));
}

TEST_F(TextFile, KeepsTheFormerTextWhenItCannotBeOpened)
{
    write_file(place.file("a"), "kept");
    read(place.file("a"));
    EXPECT_EQ(read(place.file("missing")), "kept");
    EXPECT_EQ(read(place.path().string()), "kept") << "a directory is no text";
    EXPECT_EQ(read("/dev/zero"), "kept") << "a device is no text";
}

TEST_F(TextFile, IsNotReadFromAPipeNorWaitedForThere)
{
    write_file(place.file("a"), "kept");
    read(place.file("a"));
    ASSERT_EQ(mkfifo(place.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(read(place.file("pipe")), "kept");
}

TEST_F(TextFile, KeepsZeroBytesInItsBuffer)
{
    write_file(place.file("a"), std::string("ab\0cd", 5));
    EXPECT_EQ(read(place.file("a")), "ab");
    EXPECT_EQ(buffer->bytes[3], 'c');
}

TEST_F(TextFile, IsWrittenByteForByte)
{
    const std::string text = "one\r\n\ttwo µm\n\nno line feed at the end";
    EXPECT_EQ(vimbo::write_text_file(place.file("a").c_str(), text.c_str()), 0);
    EXPECT_EQ(read_file(place.file("a")), text);
}

TEST_F(TextFile, ReplacesALongerFile)
{
    write_file(place.file("a"), std::string(100000, 'x'));
    EXPECT_EQ(vimbo::write_text_file(place.file("a").c_str(), "short"), 0);
    EXPECT_EQ(read_file(place.file("a")), "short");
    EXPECT_EQ(vimbo::write_text_file(place.file("a").c_str(), ""), 0);
    EXPECT_EQ(read_file(place.file("a")), "");
}

TEST_F(TextFile, FailsOnAFullDisk)
{
    // A device has no room that could be reserved.
    EXPECT_EQ(vimbo::write_text_file("/dev/full", "few"), -1);
    EXPECT_EQ(vimbo::write_text_file("/dev/full", std::string(65535, 'm').c_str()), -1);
}

TEST_F(TextFile, FailsWhereItCannotBeCreated)
{
    EXPECT_EQ(vimbo::write_text_file(place.file("no/such/place").c_str(), "a"), -1);
    EXPECT_EQ(vimbo::write_text_file(place.path().c_str(), "a"), -1);
    EXPECT_EQ(vimbo::write_text_file("", "a"), -1);
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

TEST_F(TextFile, IsNotWrittenToAPipeThatNobodyReads)
{
    ASSERT_EQ(mkfifo(place.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(vimbo::write_text_file(place.file("pipe").c_str(), "a"), -1);
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
