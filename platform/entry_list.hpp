// The entries of the directories that a tree walk is in, sorted: files, then
// directories, each by the bytes of their names. Main thread only.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vimbo
{

/// What a directory says of an entry, with links to files as files.
enum class entry_type : std::uint8_t { file, other, directory, link_to_directory };

/// A stack: what was read last is dropped first. All zero: empty.
struct entry_memory {
    static constexpr std::size_t bytes = std::size_t{2} << 20;
    static constexpr std::size_t entries = std::size_t{1} << 17;
    char texts[bytes];             // a type, then the name with its zero
    std::uint32_t starts[entries]; // of texts, in the entries' order
    std::size_t text_bytes, entry_count;
};

/// One directory's share of the memory.
struct entry_list {
    std::size_t first_text, first, next, end;
};

struct entry {
    const char *name; // until its list is dropped
    entry_type type;
};

/// A list with nothing in it, behind the others.
entry_list begin_list(const entry_memory &memory);

/// Adds an entry to the list that was begun last. False when it does not fit.
bool append_entry(entry_memory &memory, entry_list &list, const entry &added);

void sort_list(entry_memory &memory, const entry_list &list);

/// The list's next entry. False at its end.
bool next_entry(const entry_memory &memory, entry_list &list, entry &found);

/// Gives the memory back of the list that was begun last.
void drop_list(entry_memory &memory, const entry_list &list);

} // namespace vimbo
