#include "platform/tree_walk.hpp"

#include "platform/linux/entry_list.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vimbo
{

namespace
{

// Links are what lets a walk come to a directory twice, or for ever. With so many
// directories remembered, links to further ones are not followed.
constexpr std::size_t memory_slots = 16384; // 256 KiB
constexpr std::size_t remembered_directories = memory_slots / 4 * 3;

// Each directory on the way down adds a separator and a character, so that the
// longest path has no more of them.
constexpr std::size_t max_depth = PATH_MAX / 2;

// Descriptors that a walk may take of the program's 1024.
constexpr std::size_t max_open_directories = 256;

struct directory_id {
    dev_t device;
    ino_t number; // 0 in a free slot: file systems number from 1
};

// A hash set.
struct visited_directories {
    directory_id slots[memory_slots];
    std::size_t count;
};

// Its entries are read at once and sorted, or where there is no memory left for that,
// one by one, as the directory has them.
struct open_level {
    std::size_t path_length; // of the directory
    bool is_searchable;      // its entries can be reached, not only be read
    bool is_sorted;
    entry_list entries; // sorted
    DIR *stream;        // not sorted; null while deeper levels need its descriptor
    long place;         // where it goes on after that
};

struct tree_walk {
    tree_visitor visit;
    void *user;
    char path[PATH_MAX];
    std::size_t path_length;
    open_level levels[max_depth];
    std::size_t depth;
    visited_directories visited;
    entry_memory entries;
};

directory_id *slot_of(visited_directories &visited, const struct stat &status)
{
    // Fibonacci hashing: 2^64 divided by the golden ratio; collisions go on to the
    // next slot.
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15;
    const std::uint64_t hash = (status.st_ino ^ (status.st_dev << 32)) * multiplier;
    std::size_t at = static_cast<std::size_t>(hash >> 32) % memory_slots;
    while (visited.slots[at].number != 0 &&
           (visited.slots[at].number != status.st_ino || visited.slots[at].device != status.st_dev))
        at = (at + 1) % memory_slots;
    return &visited.slots[at];
}

// True when the walk is to go into a directory that it came to.
bool is_first_visit(visited_directories &visited, const struct stat &status,
                    bool maybe_through_link)
{
    directory_id *slot = slot_of(visited, status);
    if (slot->number != 0)
        return false;
    if (visited.count == remembered_directories)
        return !maybe_through_link;
    *slot = {status.st_dev, status.st_ino};
    ++visited.count;
    return true;
}

void set_path_length(tree_walk &walk, std::size_t length)
{
    walk.path_length = length;
    walk.path[length] = '\0';
}

// Puts a name in place of what follows the directory's own path. False when the
// path gets too long.
bool set_name(tree_walk &walk, const char *name)
{
    std::size_t length = walk.levels[walk.depth - 1].path_length;
    const std::size_t name_length = std::strlen(name);
    if (length + 1 + name_length >= sizeof walk.path)
        return false;
    if (walk.path[length - 1] != '/') // only the root's own path ends so
        walk.path[length++] = '/';
    std::memcpy(walk.path + length, name, name_length);
    set_path_length(walk, length + name_length);
    return true;
}

void suspend(open_level &level)
{
    if (level.stream == nullptr)
        return;
    level.place = telldir(level.stream);
    closedir(level.stream);
    level.stream = nullptr;
}

void enter_directory(tree_walk &walk)
{
    if (walk.depth >= max_open_directories)
        suspend(walk.levels[walk.depth - max_open_directories]);
    DIR *stream = opendir(walk.path);
    if (stream == nullptr)
        return;
    open_level &level = walk.levels[walk.depth++];
    level = {.path_length = walk.path_length,
             .is_searchable = faccessat(AT_FDCWD, walk.path, X_OK, AT_EACCESS) == 0,
             .is_sorted = false,
             .entries = {},
             .stream = stream,
             .place = 0};
    level.is_sorted = read_entries(walk.entries, stream, level.is_searchable, level.entries);
    if (!level.is_sorted) {
        rewinddir(stream);
        return;
    }
    closedir(stream);
    level.stream = nullptr;
}

void leave_directory(tree_walk &walk)
{
    const open_level &level = walk.levels[--walk.depth];
    if (level.is_sorted)
        drop_entries(walk.entries, level.entries);
    if (level.stream != nullptr)
        closedir(level.stream);
}

bool next_unsorted_entry(const tree_walk &walk, open_level &level, entry &found)
{
    if (level.stream == nullptr) {
        level.stream = opendir(walk.path);
        if (level.stream == nullptr)
            return false;
        seekdir(level.stream, level.place);
    }
    const dirent *next = nullptr;
    do
        next = readdir(level.stream);
    while (next != nullptr && is_the_directory_or_its_parent(next->d_name));
    if (next == nullptr)
        return false;
    found = {next->d_name,
             level.is_searchable ? next->d_type : static_cast<unsigned char>(DT_UNKNOWN)};
    return true;
}

// Makes `found` the next entry of the deepest directory. False at its end.
bool take_next(tree_walk &walk, entry &found)
{
    open_level &level = walk.levels[walk.depth - 1];
    set_path_length(walk, level.path_length);
    return level.is_sorted ? next_entry(walk.entries, level.entries, found)
                           : next_unsorted_entry(walk, level, found);
}

// Reports what stands at the walk's path. `type` is what its directory says of it:
// asking the system for each of thousands of files would take most of the walk.
void take_entry(tree_walk &walk, unsigned char type)
{
    struct stat status = {};
    entry_kind kind = entry_kind::other;
    if (type == DT_REG)
        kind = entry_kind::file;
    else if ((type == DT_DIR || type == DT_LNK || type == DT_UNKNOWN) &&
             stat(walk.path, &status) == 0) {
        if (S_ISREG(status.st_mode))
            kind = entry_kind::file;
        else if (S_ISDIR(status.st_mode))
            kind = entry_kind::directory;
    }
    if (kind == entry_kind::directory && !is_first_visit(walk.visited, status, type != DT_DIR))
        return;
    walk.visit(walk.path, kind, walk.user);
    if (kind == entry_kind::directory)
        enter_directory(walk);
}

// Begins at `directory`, its trailing separators aside. False when there is no such
// thing.
bool start_walk(tree_walk &walk, const char *directory)
{
    std::size_t length = std::strlen(directory);
    while (length > 1 && directory[length - 1] == '/')
        --length;
    if (length >= sizeof walk.path)
        return false;
    std::memcpy(walk.path, directory, length);
    set_path_length(walk, length);
    walk.depth = 0;
    walk.entries.text_bytes = 0;
    walk.entries.entry_count = 0;
    std::memset(&walk.visited, 0, sizeof walk.visited);
    struct stat status = {};
    return stat(walk.path, &status) == 0;
}

} // namespace

void walk_tree(const char *directory, tree_visitor visit, void *user)
{
    static tree_walk walk; // 3 MiB, too much for a frame of the stack
    walk.visit = visit;
    walk.user = user;
    if (!start_walk(walk, directory))
        return;
    take_entry(walk, DT_UNKNOWN);
    while (walk.depth > 0) {
        entry found = {};
        if (!take_next(walk, found))
            leave_directory(walk);
        else if (set_name(walk, found.name))
            take_entry(walk, found.type);
    }
}

} // namespace vimbo
