// Faults of sources, trays and tools as this system has them.
#include "tests/faults/source_rig.hpp"

#include "platform/files.hpp"
#include "platform/windows/wide_text.hpp"

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

TEST_F(FaultySource, HeldByAnotherProgramOutlivesItsDeletion)
{
    write_file(source("held"), "somebody else's");
    pick_and_expect("held", "somebody else's");
    const held_file held(source("held"));
    expect_to_outlive_its_deletion("held");
}

// The file of that name, past what makes a device of it: other systems' programs, and
// this one's shares, have such files.
std::wstring name_as_it_stands(const std::string &path)
{
    return L"\\\\?\\" + utf8_path(path).make_preferred().wstring();
}

// Not every version of the system has each of them in every folder.
bool is_device(const std::string &path)
{
    wchar_t full[vimbo::wide_path_capacity];
    GetFullPathNameW(utf8_path(path).c_str(), vimbo::wide_path_capacity, full, nullptr);
    return std::wstring_view(full).starts_with(L"\\\\.\\");
}

TEST_F(FaultySource, UnderADevicesNameIsNotSaved)
{
    for (const char *name : {"nul", "con", "aux", "prn", "com1", "lpt1", "con.txt"}) {
        if (!is_device(source(name)))
            continue;
        EXPECT_EQ(save_as(name), "error: unable to save.\n") << name;
        open_file = source(name); // it is the one that was typed
        expect_as_before();
        EXPECT_EQ(GetFileAttributesW(name_as_it_stands(source(name)).c_str()),
                  INVALID_FILE_ATTRIBUTES)
            << name;
    }
}

// It goes in any case: those who clear the folder reach the device, for ever.
class named_as_a_device
{
public:
    explicit named_as_a_device(const std::string &path) : name(name_as_it_stands(path))
    {
        CloseHandle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    }
    ~named_as_a_device()
    {
        DeleteFileW(name.c_str());
    }
    named_as_a_device(const named_as_a_device &) = delete;
    named_as_a_device &operator=(const named_as_a_device &) = delete;

    bool exists() const
    {
        return GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

private:
    std::wstring name;
};

TEST_F(FaultySource, UnderADevicesNameBringsBackTheTextOpenedBefore)
{
    if (!is_device(source("con")))
        GTEST_SKIP() << "to this system it is a name like any other";
    const named_as_a_device file(source("con"));
    pick("con");
    open_file = source("con"); // it is the one that was picked
    expect_as_before();
    panels.click("-");
    panels.click("!");
    EXPECT_TRUE(file.exists());
    open_file = "-";
    expect_as_before();
}

TEST_F(FaultySource, InADirectorysPlaceIsNotSaved)
{
    std::filesystem::create_directory(source("directory"));
    EXPECT_EQ(save_as("directory"), "error: unable to save.\n");
    open_file = source("directory"); // it is the one that was typed
    expect_as_before();
    EXPECT_TRUE(std::filesystem::is_directory(source("directory")));
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

TEST_F(FaultySource, ThatIsReadOnlyOutlivesItsDeletion)
{
    write_file(source("fixed"), "kept");
    SetFileAttributesW(utf8_path(source("fixed")).c_str(), FILE_ATTRIBUTE_READONLY);
    pick_and_expect("fixed", "kept");
    expect_to_outlive_its_deletion("fixed");
    EXPECT_EQ(read_file(source("fixed")), "kept");
    SetFileAttributesW(utf8_path(source("fixed")).c_str(), FILE_ATTRIBUTE_NORMAL);
}

// What stands at the name of the text that is handed over.
class HandedText : public FaultRig
{
protected:
    HandedText()
    {
        tools.put("mero", "say started exit 3");
    }

    ~HandedText() override
    {
        SetFileAttributesW(utf8_path(handed_text_path()).c_str(), FILE_ATTRIBUTE_NORMAL);
        std::filesystem::remove_all(handed_text_path());
    }

    void expect_told()
    {
        for (const char *button : {"Evaluate", "Integrate"}) {
            EXPECT_EQ(run_and_complaint(button),
                      "error: unable to write " + handed_text_path() + ".\n");
            EXPECT_TRUE(std::string_view(panels.app().evaluation.eval_text)
                            .ends_with("\nEvaluation:\nstarted\nStatus: uknown.\n"));
        }
        expect_as_before();
    }
};

TEST_F(HandedText, InPlaceOfADirectoryIsReported)
{
    std::filesystem::create_directory(handed_text_path());
    expect_told();
}

TEST_F(HandedText, InPlaceOfAFileThatIsHeldIsReported)
{
    write_file(handed_text_path(), "an older text");
    {
        const held_file held(handed_text_path());
        expect_told();
    }
    EXPECT_EQ(read_file(handed_text_path()), "an older text");
}

TEST_F(HandedText, InPlaceOfAFileThatIsReadOnlyIsReported)
{
    write_file(handed_text_path(), "an older text");
    SetFileAttributesW(utf8_path(handed_text_path()).c_str(), FILE_ATTRIBUTE_READONLY);
    expect_told();
    EXPECT_EQ(read_file(handed_text_path()), "an older text");
}

TEST_F(TrayName, WithAnyCharacterThatNamesMayHaveReachesTheToolsUnchanged)
{
    set_variable("VIMBO_TEST", "the value");
    for (const char *name : {"two  blanks", "a 'quoted' one", "a; b & c ^ d (e)", "%VIMBO_TEST%",
                             "%PATH%", "100%", "!PATH!", "-s", "#", "~", "Δίσκος", "盤 面"})
        expect_passed_on(name);
}

} // namespace
