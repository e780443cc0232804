// Files with names and in states that this system alone has, and its own places for
// files.
#include "platform/files.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

namespace
{

using namespace rig;
using vimbo::link_use;

bool overwrite(const std::string &path, std::string_view content)
{
    return vimbo::overwrite_file(path.c_str(), content, link_use::followed);
}

// All of a file, through the program's own door, so that any path will do.
std::string content_of(const std::string &path)
{
    std::uint64_t size = 0;
    FILE *file = vimbo::open_regular_file(path.c_str(), size);
    if (file == nullptr)
        return "not there";
    std::string content(size, '\0');
    content.resize(std::fread(content.data(), 1, content.size(), file));
    std::fclose(file);
    return content;
}

class held_file
{
public:
    held_file(const std::string &path, DWORD sharing)
        : handle(CreateFileW(std::filesystem::path(path).c_str(), GENERIC_READ, sharing, nullptr,
                             OPEN_EXISTING, 0, nullptr))
    {
        EXPECT_NE(handle, INVALID_HANDLE_VALUE);
    }
    ~held_file()
    {
        CloseHandle(handle);
    }
    held_file(const held_file &) = delete;
    held_file &operator=(const held_file &) = delete;

private:
    HANDLE handle;
};

TEST(WindowsFile, OfAnyNameIsWrittenReadAndRemoved)
{
    const scratch_directory place;
    for (const char *name : {"with blanks", "Δίσκος.lua", "盤面", "𝄞", "%PATH%", "a^b", "it's",
                             "a;b,c=d", "#$@!&()[]{}~`+-"}) {
        const std::string path = place.file("") + name;
        EXPECT_TRUE(overwrite(path, name)) << name;
        EXPECT_EQ(content_of(path), name);
        EXPECT_TRUE(vimbo::path_exists(path.c_str())) << name;
        EXPECT_TRUE(vimbo::remove_file(path.c_str())) << name;
        EXPECT_FALSE(vimbo::path_exists(path.c_str())) << name;
    }
}

TEST(WindowsFile, OfALongPathIsWrittenReadAndRemoved)
{
    const scratch_directory place;
    std::string path = place.path().generic_string();
    std::string parents[4];
    for (std::string &parent : parents) {
        path += '/' + std::string(100, 'd');
        ASSERT_TRUE(vimbo::make_directory(path.c_str()));
        parent = path;
    }
    path += "/file";
    ASSERT_GT(path.size(), 400U);
    EXPECT_TRUE(overwrite(path, "far down"));
    EXPECT_EQ(content_of(path), "far down");
    EXPECT_TRUE(vimbo::path_exists(path.c_str()));
    EXPECT_TRUE(vimbo::remove_file(path.c_str()));
    for (int i = 3; i >= 0; --i)
        EXPECT_NE(RemoveDirectoryW(
                      (L"\\\\?\\" + std::filesystem::path(parents[i]).make_preferred().wstring())
                          .c_str()),
                  FALSE);
}

TEST(WindowsFile, OfADevicesNameIsRefused)
{
    const scratch_directory place;
    for (const char *name : {"nul", "NUL", "con", "com9", "nul.txt"}) {
        const std::string path = place.file(name);
        const bool is_device = GetFullPathNameW(std::filesystem::path(path).c_str(), 0, nullptr,
                                                nullptr) < place.path().wstring().size();
        if (!is_device)
            continue; // to this system it is a name like any other
        EXPECT_FALSE(overwrite(path, "lost")) << name;
        EXPECT_EQ(content_of(path), "not there") << name;
    }
    EXPECT_FALSE(overwrite(place.file("nul"), "lost"));
    EXPECT_FALSE(overwrite("nul", "lost"));
}

TEST(WindowsFile, OfAStreamsNameIsRefused)
{
    const scratch_directory place;
    write_file(place.file("a"), "kept");
    EXPECT_FALSE(overwrite(place.file("a") + ":hidden", "lost"));
    EXPECT_EQ(content_of(place.file("a")), "kept");
}

TEST(WindowsFile, OfANameThatIsNoTextIsRefused)
{
    const scratch_directory place;
    const std::string path = place.file("") + "\xff\xfe";
    EXPECT_FALSE(overwrite(path, "lost"));
    EXPECT_FALSE(vimbo::path_exists(path.c_str()));
    EXPECT_FALSE(vimbo::make_directory(path.c_str()));
    EXPECT_FALSE(vimbo::remove_file(path.c_str()));
}

TEST(WindowsFile, HeldByAnotherProgramKeepsWhatItHolds)
{
    const scratch_directory place;
    write_file(place.file("a"), "kept");
    {
        const held_file held(place.file("a"), FILE_SHARE_READ);
        EXPECT_FALSE(overwrite(place.file("a"), "new"));
        EXPECT_FALSE(vimbo::remove_file(place.file("a").c_str()));
        EXPECT_EQ(content_of(place.file("a")), "kept");
    }
    {
        const held_file held(place.file("a"), 0);
        EXPECT_EQ(content_of(place.file("a")), "not there");
        EXPECT_TRUE(vimbo::path_exists(place.file("a").c_str()));
    }
    EXPECT_TRUE(overwrite(place.file("a"), "new"));
}

TEST(WindowsFile, ThatIsReadOnlyKeepsWhatItHolds)
{
    const scratch_directory place;
    write_file(place.file("a"), "kept");
    const std::wstring path = std::filesystem::path(place.file("a")).wstring();
    ASSERT_NE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY), FALSE);
    EXPECT_FALSE(overwrite(place.file("a"), "new"));
    EXPECT_EQ(content_of(place.file("a")), "kept");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(WindowsFile, IsWrittenByteForByteAndNoLongerThanItsContent)
{
    const scratch_directory place;
    const std::string content("one\ntwo\r\n\x1a\0three", 15);
    EXPECT_TRUE(overwrite(place.file("a"), std::string(100000, 'x')));
    EXPECT_TRUE(overwrite(place.file("a"), content));
    EXPECT_EQ(content_of(place.file("a")), content);
    EXPECT_TRUE(overwrite(place.file("a"), ""));
    EXPECT_EQ(content_of(place.file("a")), "");
}

// scripts/test-windows brings the disk where it can.
TEST(WindowsFile, OnAFullDiskKeepsWhatItHolds)
{
    const char *disk = std::getenv("VIMBO_FULL_DISK");
    if (disk == nullptr)
        GTEST_SKIP() << "there is no disk to be filled";
    const std::string kept = std::string(disk) + "/kept";
    ASSERT_TRUE(overwrite(kept, "old content"));
    FILE *filler = std::fopen((std::string(disk) + "/filler").c_str(), "wb");
    ASSERT_NE(filler, nullptr);
    std::setvbuf(filler, nullptr, _IONBF, 0);
    while (std::fputc('f', filler) != EOF) {
    }
    std::fclose(filler);
    EXPECT_FALSE(overwrite(kept, std::string(65535, 'n')));
    EXPECT_EQ(content_of(kept), "old content");
    EXPECT_FALSE(overwrite(std::string(disk) + "/new", std::string(65535, 'n')));
    EXPECT_TRUE(overwrite(kept, "of one block")) << "for which there is room still";
    EXPECT_EQ(content_of(kept), "of one block");
}

// scripts/test-windows brings the link, which no program here can make.
TEST(WindowsFile, IsWrittenThroughALink)
{
    const char *links = std::getenv("VIMBO_LINKS");
    if (links == nullptr)
        GTEST_SKIP() << "there is no link to be written through";
    const std::string linked = std::string(links) + "/linked file";
    ASSERT_EQ(content_of(linked), "old");
    EXPECT_TRUE(overwrite(std::string(links) + "/link to it", "new"));
    EXPECT_EQ(content_of(linked), "new");
    EXPECT_TRUE(overwrite(linked, "old"));
}

TEST(WindowsFile, InADirectorysPlaceIsRefused)
{
    const scratch_directory place;
    EXPECT_FALSE(overwrite(place.path().generic_string(), "lost"));
    EXPECT_FALSE(overwrite(place.path().generic_string() + '/', "lost"));
    EXPECT_FALSE(vimbo::overwrite_file(place.path().string().c_str(), "lost", link_use::replaced));
    EXPECT_EQ(content_of(place.path().generic_string()), "not there");
    EXPECT_FALSE(vimbo::remove_file(place.path().string().c_str()));
    EXPECT_TRUE(vimbo::path_exists(place.path().string().c_str()));
}

TEST(WindowsFile, ThatIsReadOnlyIsNotRemoved)
{
    const scratch_directory place;
    write_file(place.file("a"), "kept");
    const std::wstring path = std::filesystem::path(place.file("a")).wstring();
    ASSERT_NE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY), FALSE);
    EXPECT_FALSE(vimbo::remove_file(place.file("a").c_str()));
    EXPECT_EQ(content_of(place.file("a")), "kept");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(WindowsFile, MayBeWrittenWhileItIsReadHere)
{
    const scratch_directory place;
    write_file(place.file("a"), "before");
    std::uint64_t size = 0;
    FILE *reader = vimbo::open_regular_file(place.file("a").c_str(), size);
    ASSERT_NE(reader, nullptr);
    EXPECT_TRUE(overwrite(place.file("a"), "after"));
    EXPECT_TRUE(vimbo::remove_file(place.file("a").c_str()));
    std::fclose(reader);
}

TEST(TemporaryDirectory, IsOnePlainWordThatEndsInASeparator)
{
    char path[261];
    ASSERT_TRUE(vimbo::temporary_directory(path));
    const std::string text = path;
    EXPECT_TRUE(text.ends_with('\\')) << text;
    EXPECT_EQ(text.find_first_of(" &|<>^()\""), std::string::npos) << text;
    EXPECT_TRUE(vimbo::path_exists(path));
    char small[5] = "full";
    EXPECT_FALSE(vimbo::temporary_directory(small));
    EXPECT_STREQ(small, "");
}

TEST(ExecutableDirectory, IsWhereThisTestIs)
{
    char path[4096];
    ASSERT_TRUE(vimbo::executable_directory(path));
    EXPECT_TRUE(vimbo::path_exists((std::string(path) + "/unit_tests.exe").c_str())) << path;
    char small[4] = "ful";
    EXPECT_FALSE(vimbo::executable_directory(small));
    EXPECT_STREQ(small, "");
}

} // namespace
