#include "tests/unit/text_file_rig.hpp"

#include "tests/support/special_file.hpp"

#include <algorithm>

namespace
{

using namespace rig;

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
    EXPECT_EQ(read(special_file(place)), "kept");
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

TEST_F(TextFile, FailsWhereItCannotBeCreated)
{
    EXPECT_EQ(vimbo::write_text_file(place.file("no/such/place").c_str(), "a"), -1);
    EXPECT_EQ(vimbo::write_text_file(place.path().string().c_str(), "a"), -1);
    EXPECT_EQ(vimbo::write_text_file("", "a"), -1);
}

TEST_F(TextFile, IsNotWrittenToAPipeThatNobodyReads)
{
    EXPECT_EQ(vimbo::write_text_file(special_file(place).c_str(), "a"), -1);
}

} // namespace
