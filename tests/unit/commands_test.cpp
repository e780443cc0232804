// Commands behind pipes, with real processes.
#include "platform/commands.hpp"
#include "tests/support/wait.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tools.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>

namespace
{

using namespace rig;

std::string read_all(FILE *stream)
{
    std::string text;
    char buffer[4096];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, stream)) > 0;)
        text.append(buffer, count);
    return text;
}

struct outcome {
    std::string output;
    int status;
};

outcome run(const std::string &command)
{
    FILE *stream = vimbo::open_command(command.c_str());
    if (stream == nullptr)
        return {"could not be started", -2};
    std::string output = read_all(stream);
    return {output, vimbo::close_command(stream)};
}

// All that was let go has ended and is gone.
bool all_collected()
{
    return wait_until([] {
        vimbo::collect_released_commands();
        return children_of(getpid()) == 0;
    });
}

class Command : public testing::Test
{
protected:
    ~Command() override
    {
        EXPECT_TRUE(all_collected()) << "a process is left";
        EXPECT_EQ(open_descriptors(getpid()), descriptors) << "a descriptor is left open";
    }

    const scratch_directory place;
    const std::size_t descriptors = open_descriptors(getpid());
};

TEST_F(Command, GivesItsOutputAndItsExitCode)
{
    for (const int code : {0, 1, 3, 127, 128, 254}) {
        const outcome result = run(stub("say text exit " + std::to_string(code)));
        EXPECT_EQ(result.output, "text");
        EXPECT_EQ(result.status, code);
    }
}

TEST_F(Command, GivesItsExitCodeAlsoWhereTheParentIgnoredEndedChildren)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run(stub("exit 3")).status, 3);
    std::signal(SIGCHLD, SIG_IGN);
    FILE *stream = vimbo::open_command(stub("exit 4").c_str());
    vimbo::await_command_end(stream);
    EXPECT_EQ(vimbo::close_command(stream), 4);
    std::signal(SIGCHLD, before);
}

TEST_F(Command, ThatEndsWith255GivesMinusOne)
{
    EXPECT_EQ(run(stub("exit 255")).status, -1);
}

TEST_F(Command, WhoseShellDiesByASignalGivesMinusOne)
{
    EXPECT_EQ(run(stub("die 9")).status, -1);
    EXPECT_EQ(run("kill -TERM $$").status, -1);
}

TEST_F(Command, WhoseToolDiesByASignalGivesTheShellsExitCodeForIt)
{
    EXPECT_EQ(run(stub("die 9").substr(5) + "; exit $?").status, 128 + 9);
}

TEST_F(Command, ThatTheShellCannotFindGives127)
{
    const outcome result = run("no-such-tool-anywhere 2>/dev/null");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 127);
}

TEST_F(Command, RunsThoughItsQuoteIsLeftOpen)
{
    const outcome result = run("printf '<%s>' \"a  b; c/3.mmv");
    EXPECT_EQ(result.output, "<a  b; c/3.mmv>");
    EXPECT_EQ(result.status, 0);
}

TEST_F(Command, KeepsWhatIsInDoubleQuotesLiteral)
{
    const std::string name = "a$HOME `id` $(id) ${PATH} \\ \\\\ \\$ \xff ! * 'x' #\n~";
    EXPECT_EQ(run("printf '<%s>' \"" + name).output, '<' + name + '>');
    EXPECT_EQ(run("printf '<%s>' \"" + name + "\" x").output, '<' + name + "><x>");
}

TEST_F(Command, InheritsNoDescriptorButItsPipe)
{
    const std::string alone = run("ls /proc/self/fd").output;
    FILE *other = vimbo::open_command(stub("await " + place.file("go")).c_str());
    EXPECT_EQ(run("ls /proc/self/fd").output, alone) << "it has another command's pipe";
    write_file(place.file("go"), "");
    EXPECT_EQ(read_all(other), "");
    EXPECT_EQ(vimbo::close_command(other), 0);
}

TEST_F(Command, EndsItsStreamThoughAnotherProcessHoldsThePipe)
{
    const outcome result = run(stub("say started leave " + place.file("go") + " say ended exit 3"));
    EXPECT_EQ(result.output, "startedended");
    EXPECT_EQ(result.status, 3);
    write_file(place.file("go"), "");
}

TEST_F(Command, EndsItsStreamWhenItClosesItsOutputAndLivesOn)
{
    FILE *stream =
        vimbo::open_command(stub("say last shut await " + place.file("go") + " exit 7").c_str());
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(read_all(stream), "last");
    write_file(place.file("go"), "");
    EXPECT_EQ(vimbo::close_command(stream), 7);
}

TEST_F(Command, CanBeAwaitedFromTheReadersThread)
{
    FILE *stream = vimbo::open_command(stub("write 10000000 touch " + place.file("done")).c_str());
    ASSERT_NE(stream, nullptr);
    vimbo::await_command_end(stream);
    EXPECT_TRUE(std::filesystem::exists(place.file("done"))) << "10 MB were not drained";
    EXPECT_EQ(vimbo::close_command(stream), 0);
}

TEST_F(Command, ThatIsReleasedRunsOnToItsEnd)
{
    FILE *stream = vimbo::open_command(
        stub("await " + place.file("go") + " write 1000000 touch " + place.file("done")).c_str());
    ASSERT_NE(stream, nullptr);
    vimbo::release_command(stream);
    EXPECT_EQ(children_of(getpid()), 1U);
    write_file(place.file("go"), "");
    EXPECT_TRUE(all_collected());
    EXPECT_TRUE(std::filesystem::exists(place.file("done"))) << "it stopped at a full pipe";
}

TEST_F(Command, IsRefusedWhenTheTableIsFullAndAgainPossibleAfterwards)
{
    std::array<FILE *, vimbo::max_commands> streams = {};
    for (FILE *&stream : streams) {
        stream = vimbo::open_command(stub("await " + place.file("go")).c_str());
        EXPECT_NE(stream, nullptr);
    }
    EXPECT_EQ(vimbo::open_command("true"), nullptr);
    write_file(place.file("go"), "");
    for (FILE *stream : streams)
        EXPECT_EQ(vimbo::close_command(stream), 0);
    EXPECT_EQ(run("true").status, 0);
}

TEST_F(Command, ThatIsTooLongForTheShellsLineIsRefused)
{
    EXPECT_EQ(vimbo::open_command(("true " + std::string(20000, 'x')).c_str()), nullptr);
}

TEST_F(Command, ThatIsUnknownIsIgnored)
{
    EXPECT_EQ(vimbo::close_command(stdin), -1);
    vimbo::release_command(stdin);
    EXPECT_EQ(std::ferror(stdin), 0);
}

TEST_F(Command, RunManyTimesLeavesNothingBehind)
{
    for (int i = 0; i < 200; ++i) {
        FILE *stream = vimbo::open_command("echo more");
        ASSERT_NE(stream, nullptr) << "run " << i;
        if (i % 2 == 0) {
            vimbo::await_command_end(stream);
            EXPECT_EQ(vimbo::close_command(stream), 0);
        } else {
            vimbo::release_command(stream);
        }
    }
}

} // namespace
