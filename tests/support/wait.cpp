#include "tests/support/wait.hpp"

#include <thread>

namespace rig
{

bool wait_until(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    constexpr auto poll_interval = std::chrono::milliseconds(10);
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(poll_interval);
    }
    return true;
}

} // namespace rig
