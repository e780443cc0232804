#include "platform/tree_walk.hpp"

#include "platform/entry_list.hpp"
#include "platform/visited_directories.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstring>

namespace vimbo
{

namespace
{

// Each directory on the way down adds a separator and a character, so that the
// longest path has no more of them.
constexpr std::size_t max_depth = PATH_MAX / 2;

// Descriptors that a walk may take of the program's 1024.
constexpr std::size_t max_open_directories = 256;

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

bool is_the_directory_or_its_parent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

void suspend(open_level &level)
{
    if (level.stream == nullptr)
        return;
    level.place = telldir(level.stream);
    closedir(level.stream);
    level.stream = nullptr;
}

entry_type type_of(const struct stat &status)
{
    if (S_ISREG(status.st_mode))
        return entry_type::file;
    return S_ISDIR(status.st_mode) ? entry_type::link_to_directory : entry_type::other;
}

// The directory's next entry; its name is null at the end. Only where the directory
// does not say what the entry is, the system is asked: for each of thousands of files
// that would take most of the walk.
entry read_entry(DIR *directory, bool is_searchable)
{
    const dirent *found = nullptr;
    do
        found = readdir(directory);
    while (found != nullptr && is_the_directory_or_its_parent(found->d_name));
    if (found == nullptr)
        return {nullptr, entry_type::other};
    const auto type = is_searchable ? found->d_type : static_cast<unsigned char>(DT_UNKNOWN);
    if (type == DT_REG)
        return {found->d_name, entry_type::file};
    if (type == DT_DIR)
        return {found->d_name, entry_type::directory};
    struct stat status = {};
    if ((type != DT_LNK && type != DT_UNKNOWN) ||
        fstatat(dirfd(directory), found->d_name, &status, 0) != 0)
        return {found->d_name, entry_type::other};
    return {found->d_name, type_of(status)};
}

// False, and nothing of it taken, when there is no memory for all of the directory.
bool read_sorted(entry_memory &memory, open_level &level)
{
    level.entries = begin_list(memory);
    for (;;) {
        const entry found = read_entry(level.stream, level.is_searchable);
        if (found.name == nullptr)
            break;
        if (!append_entry(memory, level.entries, found)) {
            drop_list(memory, level.entries);
            return false;
        }
    }
    sort_list(memory, level.entries);
    return true;
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
    level.is_sorted = read_sorted(walk.entries, level);
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
        drop_list(walk.entries, level.entries);
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
    found = read_entry(level.stream, level.is_searchable);
    return found.name != nullptr;
}

// Makes `found` the next entry of the deepest directory. False at its end.
bool take_next(tree_walk &walk, entry &found)
{
    open_level &level = walk.levels[walk.depth - 1];
    set_path_length(walk, level.path_length);
    return level.is_sorted ? next_entry(walk.entries, level.entries, found)
                           : next_unsorted_entry(walk, level, found);
}

// Reports what stands at the walk's path.
void take_entry(tree_walk &walk, entry_type type)
{
    struct stat status = {};
    entry_kind kind = entry_kind::other;
    if (type == entry_type::file)
        kind = entry_kind::file;
    else if (type != entry_type::other && stat(walk.path, &status) == 0 && S_ISDIR(status.st_mode))
        kind = entry_kind::directory;
    if (kind == entry_kind::directory &&
        !is_first_visit(walk.visited, {status.st_dev, status.st_ino},
                        type == entry_type::link_to_directory))
        return;
    walk.visit(walk.path, kind, walk.user);
    if (kind == entry_kind::directory)
        enter_directory(walk);
}

// Begins at `directory`, its trailing separators aside. False when there is no such
// thing; else `type` says what it is.
bool start_walk(tree_walk &walk, const char *directory, entry_type &type)
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
    if (stat(walk.path, &status) != 0)
        return false;
    type = type_of(status);
    return true;
}

} // namespace

void walk_tree(const char *directory, tree_visitor visit, void *user)
{
    static tree_walk walk; // 3 MiB, too much for a frame of the stack
    walk.visit = visit;
    walk.user = user;
    entry_type type = entry_type::other;
    if (!start_walk(walk, directory, type))
        return;
    take_entry(walk, type);
    while (walk.depth > 0) {
        entry found = {};
        if (!take_next(walk, found))
            leave_directory(walk);
        else if (set_name(walk, found.name))
            take_entry(walk, found.type);
    }
}

} // namespace vimbo
