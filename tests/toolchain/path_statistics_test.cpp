// The measuring of a path, without the process around it.
#include "toolchain/path_statistics.hpp"

#include "tests/support/child_watch.hpp"
#include "tests/support/wait.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace
{

// The most threads that this process has while it measures the moves.
std::size_t most_threads_to_measure(const std::vector<vimbo::path_vertex> &moves)
{
    std::atomic<bool> measured = false;
    std::size_t most = 0;
    std::thread watcher([&] {
        while (!measured)
            most = std::max(most, rig::threads_of(getpid()));
    });
    toolchain::measure_path(moves);
    measured = true;
    watcher.join();
    return most;
}

TEST(PathStatistics, AreMeasuredByAsManyThreadsAsThereAreProcessors)
{
    constexpr std::size_t sixteen_stretches = std::size_t{1} << 24;
    const std::vector<vimbo::path_vertex> moves(sixteen_stretches);
    const std::size_t watching = rig::threads_of(getpid()) + 1;
    const std::size_t helpers =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 16) - 1;
    std::size_t most = 0;
    // On a busy machine the watcher may come too late.
    rig::wait_until([&] {
        most = most_threads_to_measure(moves);
        return most == watching + helpers;
    });
    EXPECT_EQ(most, watching + helpers);
}

} // namespace
