// Commands behind pipes, with real processes.
#include "tests/unit/command_rig.hpp"

#include <array>
#include <string>

namespace
{

using namespace rig;

TEST_F(Command, GivesItsOutputAndItsExitCode)
{
    for (const int code : {0, 1, 3, 127, 128, 254}) {
        const outcome result = run(stub("say text exit " + std::to_string(code)));
        EXPECT_EQ(result.output, "text");
        EXPECT_EQ(result.status, code);
    }
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
    EXPECT_EQ(vimbo::open_command("echo more"), nullptr);
    write_file(place.file("go"), "");
    for (FILE *stream : streams)
        EXPECT_EQ(vimbo::close_command(stream), 0);
    EXPECT_EQ(run("echo more").status, 0);
}

TEST_F(Command, ThatIsUnknownIsIgnored)
{
    EXPECT_EQ(vimbo::close_command(stdin), -1);
    vimbo::release_command(stdin);
    EXPECT_EQ(std::ferror(stdin), 0);
}

TEST_F(Command, ThatIsClosedIsUnknownFromThenOn)
{
    FILE *stream = vimbo::open_command("exit 3");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(vimbo::close_command(stream), 3);
    // Known only by its address, which nothing looks behind.
    EXPECT_EQ(vimbo::close_command(stream), -1) << "its slot keeps the closed stream";
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
