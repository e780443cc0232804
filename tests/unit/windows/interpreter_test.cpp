// What the command interpreter makes of commands.
#include "tests/unit/command_rig.hpp"

#include <filesystem>
#include <string>

namespace
{

using namespace rig;
using InterpretedCommand = Command;

// A tool that only notes its arguments, under a name without blanks.
class NotedCommand : public Command
{
protected:
    NotedCommand()
    {
        std::filesystem::copy_file(VIMBO_STUB_TOOL, place.file("noter.exe"));
        write_file(place.file("noter.actions"), "exit 0");
    }

    std::string arguments_of(const std::string &rest)
    {
        const std::string tool =
            std::filesystem::path(place.file("noter.exe")).make_preferred().string();
        EXPECT_EQ(run(tool + ' ' + rest).status, 0) << rest;
        return read_file(place.file("noter.arguments"));
    }
};

TEST_F(InterpretedCommand, GivesItsExitCodeAsItIs)
{
    EXPECT_EQ(run(stub("exit 255")).status, 255);
    EXPECT_EQ(run(stub("exit -1")).status, -1);
    EXPECT_EQ(run(stub("exit 9009")).status, 9009);
    EXPECT_EQ(run(stub("die 7")).status, 7);
}

TEST_F(InterpretedCommand, ThatIsNotFoundIsAnError)
{
    const outcome result = run(missing_tool());
    EXPECT_EQ(result.output, "");
    EXPECT_GT(result.status, 0);
}

TEST_F(InterpretedCommand, ThatIsTooLongForItsLineIsRefused)
{
    EXPECT_EQ(vimbo::open_command(("echo " + std::string(9000, 'x')).c_str()), nullptr);
}

TEST_F(InterpretedCommand, ThatIsNotUtf8IsRefused)
{
    EXPECT_EQ(vimbo::open_command("echo \xff"), nullptr);
}

TEST_F(InterpretedCommand, HasLineEndsOfOneCharacter)
{
    EXPECT_EQ(run(stub("bytes 610d0a0d0d0a620d63")).output, "a\n\r\nb\rc");
    EXPECT_EQ(run(stub("bytes 610d")).output, "a\r");
    // Over and over, so that one falls between two pieces of what arrives.
    std::string pairs;
    for (int i = 0; i < 1000; ++i)
        pairs += "610d0a";
    const std::string output = run(stub("bytes " + pairs)).output;
    EXPECT_EQ(output.size(), 2000U);
    EXPECT_EQ(output.find('\r'), std::string::npos);
}

TEST_F(InterpretedCommand, MayPrintTheCharacterThatOnceEndedFiles)
{
    EXPECT_EQ(run(stub("bytes 611a62")).output, "a\x1a"
                                                "b");
}

TEST_F(NotedCommand, RunsThoughItsQuoteIsLeftOpen)
{
    EXPECT_EQ(arguments_of("\"a  b; c & d/3.mmv"), "a  b; c & d/3.mmv\n");
}

TEST_F(NotedCommand, GetsNamesOfVariablesAsTheyAre)
{
    set_variable("VIMBO_TEST", "the value");
    EXPECT_EQ(arguments_of("\"%VIMBO_TEST%/0.mmv\""), "%VIMBO_TEST%/0.mmv\n");
    EXPECT_EQ(arguments_of("\"%PATH%"), "%PATH%\n");
    EXPECT_EQ(arguments_of("\"100%\""), "100%\n");
    EXPECT_EQ(arguments_of("\"50%-100% ^ a!b\""), "50%-100% ^ a!b\n");
    EXPECT_EQ(arguments_of("\"%PATH%;%VIMBO_TEST%"), "%PATH%;%VIMBO_TEST%\n");
    EXPECT_EQ(arguments_of("\"%VIMBO_PERCENT%\""), "%VIMBO_PERCENT%\n");
    EXPECT_EQ(arguments_of("\"!VIMBO_TEST!\""), "!VIMBO_TEST!\n");
}

TEST_F(NotedCommand, GetsCaretsAndOperatorsInQuotesAsTheyAre)
{
    EXPECT_EQ(arguments_of("\"a^b & echo c | d > e < f (g)"), "a^b & echo c | d > e < f (g)\n");
    EXPECT_FALSE(std::filesystem::exists("e"));
}

TEST_F(NotedCommand, GetsEveryCharacterOfUnicode)
{
    EXPECT_EQ(arguments_of("\"Δίσκος 盤 𝄞"), "Δίσκος 盤 𝄞\n");
}

TEST_F(NotedCommand, FindsNoVariableOfOursAfterwards)
{
    arguments_of("x");
    EXPECT_EQ(std::getenv("VIMBO_PERCENT"), nullptr);
    EXPECT_EQ(std::getenv("NoDefaultCurrentDirectoryInExePath"), nullptr);
}

} // namespace
