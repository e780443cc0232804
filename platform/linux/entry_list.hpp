// The entries of the directories that a walk is in, sorted: files, then directories,
// each by the bytes of their names. Main thread only.
#pragma once

#include <dirent.h>

#include <cstddef>
#include <cstdint>

namespace vimbo
{

/// A stack: what was read last is dropped first. All zero: empty.
struct entry_memory {
    static constexpr std::size_t bytes = std::size_t{2} << 20; // of types and names
    static constexpr std::size_t entries = std::size_t{1} << 17;
    char texts[bytes];             // a type, then the name with its zero
    std::uint32_t starts[entries]; // of texts, in the entries' order
    std::size_t text_bytes, entry_count;
};

/// One directory's share of the memory.
struct entry_list {
    std::size_t first_text, first, next, end;
};

/// An entry as its directory has it. Its type is DT_REG for a link to a file as well,
/// and DT_LNK or DT_UNKNOWN only for what may be a directory.
struct entry {
    const char *name; // until its list is dropped
    unsigned char type;
};

/// True for the two names that every directory has, and no list.
bool is_the_directory_or_its_parent(const char *name);

/// Reads all that is left of the directory. False, and nothing taken, when it does not
/// fit. The types of a directory that is not searchable are not to be had.
bool read_entries(entry_memory &memory, DIR *directory, bool is_searchable, entry_list &list);

/// The list's next entry. False at its end.
bool next_entry(const entry_memory &memory, entry_list &list, entry &found);

void drop_entries(entry_memory &memory, const entry_list &list);

} // namespace vimbo
