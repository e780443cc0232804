#include "platform/visited_directories.hpp"

namespace vimbo
{

namespace
{

// Where the directory stands, or would.
std::size_t slot_of(const visited_directories &visited, const directory_id &directory)
{
    // Fibonacci hashing: 2^64 divided by the golden ratio; collisions go on to the
    // next slot.
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15;
    const std::uint64_t hash = (directory.number ^ (directory.volume << 32)) * multiplier;
    std::size_t at = static_cast<std::size_t>(hash >> 32) % visited_directories::slot_count;
    while (visited.used[at] && visited.slots[at] != directory)
        at = (at + 1) % visited_directories::slot_count;
    return at;
}

} // namespace

bool is_first_visit(visited_directories &visited, const directory_id &directory,
                    bool maybe_through_link)
{
    const std::size_t slot = slot_of(visited, directory);
    if (visited.used[slot])
        return false;
    if (visited.count == visited_directories::most)
        return !maybe_through_link;
    visited.slots[slot] = directory;
    visited.used[slot] = true;
    ++visited.count;
    return true;
}

} // namespace vimbo
