// Waiting for what another process or thread does.
#pragma once

#include <chrono>
#include <functional>

namespace rig
{

/// Polls until the condition holds. False when it does not within the time.
bool wait_until(const std::function<bool()> &condition,
                std::chrono::milliseconds limit = std::chrono::seconds(20));

} // namespace rig
