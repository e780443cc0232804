// The main function of tests that run the program's own code in their process: each
// test has to leave as many descriptors open as it found.
#include "platform/commands.hpp"
#include "tests/support/child_watch.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

namespace
{

class descriptor_watch : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo & /*test*/) override
    {
        before = rig::open_descriptors(getpid());
    }

    void OnTestEnd(const testing::TestInfo & /*test*/) override
    {
        // A tool that a test let go may take a moment to end.
        constexpr std::chrono::seconds limit(5);
        std::size_t after = 0;
        const auto as_before = [&] {
            vimbo::collect_released_commands();
            after = rig::open_descriptors(getpid());
            return after == before;
        };
        EXPECT_TRUE(rig::wait_until(as_before, limit))
            << "descriptors were left open: " << before << " before, " << after << " after";
    }

    std::size_t before = 0;
};

} // namespace

int main(int argument_count, char *arguments[])
{
    testing::InitGoogleTest(&argument_count, arguments);
    testing::UnitTest::GetInstance()->listeners().Append(new descriptor_watch);
    return RUN_ALL_TESTS();
}
