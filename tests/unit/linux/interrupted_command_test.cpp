// Signals that reach a reader while it waits for its tool.
#include "jobs/command_job.hpp"
#include "jobs/eval_reader.hpp"
#include "platform/commands.hpp"
#include "tests/support/scratch.hpp"
#include "tests/support/tools.hpp"
#include "tests/support/wait.hpp"
#include "ui/flags.hpp"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <string>
#include <thread>

namespace
{

using namespace rig;

std::atomic<int> signals_taken = 0;

// Without SA_RESTART: the call that waits is interrupted.
class InterruptedReader : public testing::Test
{
protected:
    InterruptedReader()
    {
        signals_taken = 0;
        struct sigaction counting = {};
        counting.sa_handler = [](int) { ++signals_taken; };
        sigaction(SIGUSR1, &counting, &before);
    }
    ~InterruptedReader() override
    {
        sigaction(SIGUSR1, &before, nullptr);
    }

    // Its result, with many signals sent while the tool awaits the file "go".
    std::string interrupted(const std::string &actions)
    {
        FILE *stream = vimbo::open_command(stub(actions).c_str());
        EXPECT_NE(stream, nullptr);
        std::string result;
        std::thread reader([&] { result = static_cast<const char *>(vimbo::eval_reader(stream)); });
        EXPECT_TRUE(wait_until([&] {
            pthread_kill(reader.native_handle(), SIGUSR1);
            return signals_taken >= 20;
        }));
        write_file(place.file("go"), "");
        reader.join();
        EXPECT_EQ(vimbo::close_command(stream), 3);
        return result;
    }

    struct sigaction before = {};
    const scratch_directory place;
};

// The side that closes it, in the same way.
TEST_F(InterruptedReader, StaysWithAToolThatIsClosedBeforeItsEnd)
{
    FILE *stream = vimbo::open_command(stub("shut await " + place.file("go") + " exit 3").c_str());
    ASSERT_NE(stream, nullptr);
    int status = -2;
    std::thread closer([&] { status = vimbo::close_command(stream); });
    EXPECT_TRUE(wait_until([&] {
        pthread_kill(closer.native_handle(), SIGUSR1);
        return signals_taken >= 20;
    }));
    write_file(place.file("go"), "");
    closer.join();
    EXPECT_EQ(status, 3) << "a signal ended the waiting for the tool's own status";
}

TEST_F(InterruptedReader, StaysWithAToolThatIsSilent)
{
    EXPECT_EQ(interrupted("await " + place.file("go") + " say late exit 3"), "late\n");
}

TEST_F(InterruptedReader, StaysWithAToolThatHasClosedItsOutput)
{
    EXPECT_EQ(interrupted("say early shut await " + place.file("go") + " exit 3"), "early\n");
}

} // namespace
