// Faults of sources, trays and tools as this system has them.
#include "tests/faults/source_rig.hpp"

#include "platform/files.hpp"

#include <windows.h>

namespace
{

using namespace rig;

TEST_F(FaultySource, WithAnyCharacterInItsNameIsOpenedSavedAndDeleted)
{
    const std::string names[] = {
        "with blanks in it", "'single' quotes", "%PATH% ^ & (b)", "Δίσκος", "盤面", "-r"};
    for (const std::string &name : names) {
        const std::string content = "text number " + std::to_string(&name - names);
        write_file(utf8_path(source(name)), content);
        pick_and_expect(name, content);
        EXPECT_EQ(save_as(name + "2"), "");
        EXPECT_EQ(read_file(utf8_path(source(name + "2"))), content);
        open_file = source(name + "2");
        expect_as_before();
        panels.click("-");
        panels.click("!");
        EXPECT_FALSE(std::filesystem::exists(utf8_path(source(name + "2"))));
        open_file = std::string("-");
        expect_as_before();
        write_file(source("a.txt"), "the text");
        vimbo::open_source(panels.app().bar, panels.app().editor, source("a.txt").c_str());
    }
}

class held_file
{
public:
    explicit held_file(const std::string &path)
        : handle(CreateFileW(utf8_path(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0,
                             nullptr))
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

TEST_F(FaultySource, HeldByAnotherProgramBringsBackTheTextOpenedBefore)
{
    write_file(source("held"), "somebody else's");
    const held_file held(source("held"));
    pick("held");
    open_file = source("held"); // it is the one that was picked
    expect_as_before();
}

TEST_F(FaultySource, HeldByAnotherProgramIsNotSavedOver)
{
    write_file(source("held"), "somebody else's");
    {
        const held_file held(source("held"));
        EXPECT_EQ(save_as("held"), "error: unable to save.\n");
        open_file = source("held"); // it is the one that was typed
        expect_as_before();
    }
    EXPECT_EQ(read_file(source("held")), "somebody else's");
}

TEST_F(FaultySource, UnderADevicesNameIsNotSaved)
{
    EXPECT_EQ(save_as("nul"), "error: unable to save.\n");
    open_file = source("nul"); // it is the one that was typed
    expect_as_before();
}

TEST_F(FaultySource, InAFileOfItsOwnNamesStreamIsNotSaved)
{
    EXPECT_EQ(save_as("a.txt:hidden"), "error: unable to save.\n");
    open_file = source("a.txt:hidden");
    expect_as_before();
    EXPECT_EQ(read_file(source("a.txt")), "the text\nof two lines\n");
}

TEST_F(FaultySource, ThatIsReadOnlyIsNotSavedOver)
{
    write_file(source("fixed"), "kept");
    SetFileAttributesW(utf8_path(source("fixed")).c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(save_as("fixed"), "error: unable to save.\n");
    open_file = source("fixed");
    expect_as_before();
    EXPECT_EQ(read_file(source("fixed")), "kept");
    SetFileAttributesW(utf8_path(source("fixed")).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(TrayName, WithAnyCharacterThatNamesMayHaveReachesTheToolsUnchanged)
{
    set_variable("VIMBO_TEST", "the value");
    for (const char *name : {"two  blanks", "a 'quoted' one", "a; b & c ^ d (e)", "%VIMBO_TEST%",
                             "%PATH%", "100%", "!PATH!", "-s", "#", "~", "Δίσκος", "盤 面"})
        expect_passed_on(name);
}

} // namespace
