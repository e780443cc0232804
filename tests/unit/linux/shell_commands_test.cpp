// What a POSIX shell makes of commands.
#include "tests/unit/command_rig.hpp"

#include <stdio_ext.h>

#include <csignal>

namespace
{

using namespace rig;
using ShellCommand = Command;

TEST_F(ShellCommand, GivesItsExitCodeAlsoWhereTheParentIgnoredEndedChildren)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run(stub("exit 3")).status, 3);
    std::signal(SIGCHLD, SIG_IGN);
    FILE *stream = vimbo::open_command(stub("exit 4").c_str());
    vimbo::await_command_end(stream);
    EXPECT_EQ(vimbo::close_command(stream), 4);
    std::signal(SIGCHLD, before);
}

TEST_F(ShellCommand, ThatEndsWith255GivesMinusOne)
{
    EXPECT_EQ(run(stub("exit 255")).status, -1);
}

TEST_F(ShellCommand, WhoseShellDiesByASignalGivesMinusOne)
{
    EXPECT_EQ(run(stub("die 9")).status, -1);
    EXPECT_EQ(run("kill -TERM $$").status, -1);
}

TEST_F(ShellCommand, WhoseToolDiesByASignalGivesTheShellsExitCodeForIt)
{
    EXPECT_EQ(run(stub("die 9").substr(5) + "; exit $?").status, 128 + 9);
}

TEST_F(ShellCommand, ThatTheShellCannotFindGives127)
{
    const outcome result = run("no-such-tool-anywhere 2>/dev/null");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 127);
}

TEST_F(ShellCommand, RunsThoughItsQuoteIsLeftOpen)
{
    const outcome result = run("printf '<%s>' \"a  b; c/3.mmv");
    EXPECT_EQ(result.output, "<a  b; c/3.mmv>");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ShellCommand, KeepsWhatIsInDoubleQuotesLiteral)
{
    const std::string name = "a$HOME `id` $(id) ${PATH} \\ \\\\ \\$ \xff ! * 'x' #\n~";
    EXPECT_EQ(run("printf '<%s>' \"" + name).output, '<' + name + '>');
    EXPECT_EQ(run("printf '<%s>' \"" + name + "\" x").output, '<' + name + "><x>");
}

TEST_F(ShellCommand, InheritsNoDescriptorButItsPipe)
{
    const std::string alone = run("ls /proc/self/fd").output;
    FILE *other = vimbo::open_command(stub("await " + place.file("go")).c_str());
    EXPECT_EQ(run("ls /proc/self/fd").output, alone) << "it has another command's pipe";
    write_file(place.file("go"), "");
    EXPECT_EQ(read_all(other), "");
    EXPECT_EQ(vimbo::close_command(other), 0);
}

TEST_F(ShellCommand, ThatIsTooLongForTheShellsLineIsRefused)
{
    EXPECT_EQ(vimbo::open_command(("true " + std::string(20000, 'x')).c_str()), nullptr);
}

TEST_F(ShellCommand, GivesWhatAProcessPrintsThatItLeftBehindASecondBefore)
{
    // A third of that second, or the test would fail on a machine that is busy.
    FILE *stream = vimbo::open_command("(sleep 0.3; echo late) & echo early");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(read_all(stream), "early\nlate\n");
    EXPECT_EQ(vimbo::close_command(stream), 0);
}

TEST_F(ShellCommand, TakesNoLockForItsStreamThatTheProgramsEndWouldWaitFor)
{
    FILE *stream = vimbo::open_command("exit 0");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(__fsetlocking(stream, FSETLOCKING_QUERY), FSETLOCKING_BYCALLER);
    vimbo::close_command(stream);
}

} // namespace
