// The directories that a tree walk came to. Links are what lets it come to one twice,
// or for ever.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vimbo
{

/// A directory as its system knows it, whatever path leads there.
struct directory_id {
    std::uint64_t volume, number;

    bool operator==(const directory_id &) const = default;
};

/// A hash set. All zero: empty. With so many in it, links to further ones are not
/// followed.
struct visited_directories {
    static constexpr std::size_t slot_count = 16384;
    static constexpr std::size_t most = slot_count / 4 * 3;
    directory_id slots[slot_count];
    bool used[slot_count];
    std::size_t count;
};

/// Adds the directory. True when the walk is to go into it.
bool is_first_visit(visited_directories &visited, const directory_id &directory,
                    bool maybe_through_link);

} // namespace vimbo
