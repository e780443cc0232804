#include "platform/tree_walk.hpp"

#include "platform/entry_list.hpp"
#include "platform/visited_directories.hpp"
#include "platform/windows/directory_search.hpp"

#include <cstddef>
#include <cstring>

namespace vimbo
{

namespace
{

constexpr std::size_t path_capacity = 4096;
// Each directory on the way down adds a separator and a character.
constexpr std::size_t max_depth = path_capacity / 2;

// Its entries are read at once and sorted, or where there is no memory left for that,
// one by one, as the directory has them.
struct open_level {
    std::size_t path_length; // of the directory
    bool is_sorted;
    entry_list entries;      // sorted
    directory_search search; // not sorted
};

struct tree_walk {
    tree_visitor visit;
    void *user;
    char path[path_capacity];
    std::size_t path_length;
    open_level levels[max_depth];
    std::size_t depth;
    found_entry found;
    visited_directories visited;
    entry_memory entries;
};

bool is_separator(char character)
{
    return character == '/' || character == '\\';
}

void set_path_length(tree_walk &walk, std::size_t length)
{
    walk.path_length = length;
    walk.path[length] = '\0';
}

// Puts a name behind the directory's own path. False when the path gets too long.
bool set_name(tree_walk &walk, const char *name)
{
    std::size_t length = walk.levels[walk.depth - 1].path_length;
    if (length + 2 >= sizeof walk.path)
        return false;
    // The root's own path ends so, and behind a drive alone its own directory stands.
    if (!is_separator(walk.path[length - 1]) && walk.path[length - 1] != ':')
        walk.path[length++] = '/';
    const std::size_t name_length = std::strlen(name);
    if (length + name_length >= sizeof walk.path)
        return false;
    std::memcpy(walk.path + length, name, name_length);
    set_path_length(walk, length + name_length);
    return true;
}

// False, and nothing of it taken, when there is no memory for all of the directory.
bool read_sorted(tree_walk &walk, open_level &level)
{
    level.entries = begin_list(walk.entries);
    entry next = {};
    while (search_next(level.search, walk.found, next))
        if (!append_entry(walk.entries, level.entries, next)) {
            drop_list(walk.entries, level.entries);
            return false;
        }
    sort_list(walk.entries, level.entries);
    return true;
}

void enter_directory(tree_walk &walk)
{
    directory_search search = {};
    if (walk.depth == max_depth || !start_search(walk.path, search, walk.found))
        return;
    open_level &level = walk.levels[walk.depth++];
    level = {walk.path_length, false, {}, search};
    level.is_sorted = read_sorted(walk, level);
    end_search(level.search);
    // Once more from its beginning.
    if (!level.is_sorted && !start_search(walk.path, level.search, walk.found))
        --walk.depth;
}

void leave_directory(tree_walk &walk)
{
    open_level &level = walk.levels[--walk.depth];
    if (level.is_sorted)
        drop_list(walk.entries, level.entries);
    else
        end_search(level.search);
}

// Makes `next` the next entry of the deepest directory. False at its end.
bool take_next(tree_walk &walk, entry &next)
{
    open_level &level = walk.levels[walk.depth - 1];
    set_path_length(walk, level.path_length);
    return level.is_sorted ? next_entry(walk.entries, level.entries, next)
                           : search_next(level.search, walk.found, next);
}

// One that tells nothing of itself, as it denies us all access, is no link to another.
void report_directory(tree_walk &walk, const destination &there, bool through_link)
{
    if (there.exists && !is_first_visit(walk.visited, there.id, through_link))
        return;
    walk.visit(walk.path, entry_kind::directory, walk.user);
    enter_directory(walk);
}

// Reports what stands at the walk's path.
void take_entry(tree_walk &walk, entry_type type)
{
    if (type == entry_type::file) {
        walk.visit(walk.path, entry_kind::file, walk.user);
        return;
    }
    const bool through_link = type == entry_type::link_to_directory;
    const destination there = find_destination(walk.path);
    if (there.exists ? there.is_directory : !through_link)
        report_directory(walk, there, through_link);
    else
        walk.visit(walk.path, there.exists ? entry_kind::file : entry_kind::other, walk.user);
}

// Begins at `directory`, its trailing separators aside but for those of a root. False
// when it is too long, or no text at all.
bool start_walk(tree_walk &walk, const char *directory)
{
    std::size_t length = std::strlen(directory);
    while (length > 1 && is_separator(directory[length - 1]) && directory[length - 2] != ':')
        --length;
    if (length == 0 || length >= sizeof walk.path)
        return false;
    std::memcpy(walk.path, directory, length);
    set_path_length(walk, length);
    walk.depth = 0;
    walk.entries.text_bytes = 0;
    walk.entries.entry_count = 0;
    std::memset(&walk.visited, 0, sizeof walk.visited);
    return true;
}

} // namespace

void walk_tree(const char *directory, tree_visitor visit, void *user)
{
    static tree_walk walk; // 3 MiB, too much for a frame of the stack
    walk.visit = visit;
    walk.user = user;
    if (!start_walk(walk, directory))
        return;
    const destination start = find_destination(walk.path);
    if (!start.exists)
        return;
    if (start.is_directory)
        report_directory(walk, start, false);
    else
        visit(walk.path, entry_kind::file, user);
    while (walk.depth > 0) {
        entry next = {};
        if (!take_next(walk, next))
            leave_directory(walk);
        else if (set_name(walk, next.name))
            take_entry(walk, next.type);
    }
}

} // namespace vimbo
