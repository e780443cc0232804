// Threads as the system sees them, past the library that starts them.
#include "platform/threads.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>

namespace
{

void *open_own_thread(void * /*argument*/)
{
    return OpenThread(SYNCHRONIZE, FALSE, GetCurrentThreadId());
}

// Asks over and over, so that no moment is missed.
bool join_at_once(vimbo::reader_thread thread, void *&result)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!vimbo::try_join(thread, result))
        if (std::chrono::steady_clock::now() > deadline)
            return false;
    return true;
}

TEST(ReaderThread, HasEndedWhenItIsJoined)
{
    constexpr int rounds = 1000;
    int still_there = 0;
    for (int i = 0; i < rounds; ++i) {
        vimbo::reader_thread thread = {};
        ASSERT_TRUE(vimbo::start_thread(thread, open_own_thread, nullptr));
        void *joined = nullptr;
        ASSERT_TRUE(join_at_once(thread, joined));
        still_there += WaitForSingleObject(joined, 0) == WAIT_OBJECT_0 ? 0 : 1;
        CloseHandle(joined);
    }
    EXPECT_EQ(still_there, 0) << "of " << rounds << " threads were joined before their end";
}

} // namespace
