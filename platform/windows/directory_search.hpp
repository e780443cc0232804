// What a directory holds, and what a path leads to, as the system tells it.
#pragma once

#include "platform/entry_list.hpp"
#include "platform/visited_directories.hpp"

#include <cstddef>

#include <windows.h>

namespace vimbo
{

/// What a path, its links followed, leads to. All zero: nothing.
struct destination {
    bool exists;
    bool is_directory;
    directory_id id;
};

destination find_destination(const char *path);

/// The entry that searches have found last: one record for all of them.
struct found_entry {
    // At most 260 units of 16 bits, each at most three bytes.
    static constexpr std::size_t name_capacity = std::size_t{3} * 260;
    WIN32_FIND_DATAW data;
    char name[name_capacity];
};

/// The way through one directory's entries, in the system's order.
struct directory_search {
    HANDLE handle;
    bool has_first; // the first entry, which comes with the search, is still to be given
};

/// Begins at the directory's first entry. False when it cannot be read. Until that entry
/// has been given, no other search may use the same record.
bool start_search(const char *directory, directory_search &search, found_entry &found);

/// Gives the next entry, but for the directory itself and its parent; its name stands in
/// `found`. Links are taken for those to directories. False at the end.
bool search_next(directory_search &search, found_entry &found, entry &next);

void end_search(directory_search &search);

} // namespace vimbo
