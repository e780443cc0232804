// UTF-16 and UTF-8, and paths on their way to the system.
#include "platform/windows/wide_text.hpp"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace vimbo;

std::wstring wide(const std::string &text)
{
    wchar_t out[64];
    return to_wide(text.c_str(), out) ? out : L"refused";
}

std::string narrow(const std::wstring &text)
{
    char out[64];
    return to_utf_8(text.c_str(), out) ? out : "refused";
}

std::wstring system_path(const std::string &path)
{
    wchar_t out[wide_path_capacity];
    return to_system_path(path.c_str(), out) ? out : L"refused";
}

TEST(WideText, IsTheSameTextBackAndForth)
{
    for (const char *text : {"", "plain", "µm", "Ωμέγα", "盤面", "𝄞 clef", "\x7f"})
        EXPECT_EQ(narrow(wide(text)), text);
    EXPECT_EQ(wide("µ盤𝄞"), L"\u00b5\u76e4\U0001d11e");
}

TEST(WideText, KeepsHalvesOfPairs)
{
    for (const std::wstring &half :
         {std::wstring(L"a\xd800z"), std::wstring(L"\xdfff"), std::wstring(L"\xdc00\xd800")}) {
        const std::string bytes = narrow(half);
        EXPECT_EQ(wide(bytes), half);
    }
}

TEST(WideText, IsNotMadeOfWhatIsNoUtf8)
{
    for (const char *text : {"\xff", "a\x80", "\xc3", "\xc0\x80", "\xe2\x82", "\xf0\x9f\x98",
                             "\xe0\x80\xaf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80"})
        EXPECT_EQ(wide(text), L"refused") << text;
}

TEST(WideText, IsNotCut)
{
    wchar_t exact[4];
    EXPECT_TRUE(to_wide("abc", exact));
    EXPECT_FALSE(to_wide("abcd", exact));
    EXPECT_EQ(exact[0], L'\0');
    EXPECT_FALSE(to_wide("ab𝄞", exact)) << "it takes two";
    char bytes[4];
    EXPECT_TRUE(to_utf_8(L"abc", bytes));
    EXPECT_FALSE(to_utf_8(L"ab\u00b5", bytes));
    EXPECT_STREQ(bytes, "");
}

TEST(SystemPath, IsTheShortPathItself)
{
    EXPECT_EQ(system_path("c:/a/b"), L"c:/a/b");
    EXPECT_EQ(system_path("./a"), L"./a");
    EXPECT_EQ(system_path("/tmp/mero.end"), L"/tmp/mero.end");
}

TEST(SystemPath, IsSpelledOutWhereItIsLong)
{
    const std::string name(250, 'n');
    const std::wstring wide_name(250, L'n');
    EXPECT_EQ(system_path("c:/a/../" + name), L"\\\\?\\c:\\" + wide_name);
    EXPECT_EQ(system_path("//server/share/" + name), L"\\\\?\\UNC\\server\\share\\" + wide_name);
    EXPECT_EQ(system_path("\\\\?\\c:\\" + name), L"\\\\?\\c:\\" + wide_name);
    EXPECT_TRUE(system_path(name).starts_with(L"\\\\?\\")) << "a relative one as well";
}

TEST(SystemPath, NamesNoStreamInAFile)
{
    EXPECT_EQ(system_path("c:/a:b"), L"refused");
    EXPECT_EQ(system_path("name:stream"), L"refused");
    EXPECT_EQ(system_path("\\\\?\\c:\\a"), L"\\\\?\\c:\\a");
}

TEST(SystemPath, IsRefusedWhenEmptyOrNoText)
{
    EXPECT_EQ(system_path(""), L"refused");
    EXPECT_EQ(system_path("c:/\xff"), L"refused");
    EXPECT_EQ(system_path(std::string(9000, 'p')), L"refused");
}

} // namespace
