#include "platform/tree_walk.hpp"

#include "platform/entry_list.hpp"
#include "platform/visited_directories.hpp"
#include "platform/windows/wide_text.hpp"

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace vimbo
{

namespace
{

constexpr std::size_t path_capacity = 4096;
// Each directory on the way down adds a separator and a character.
constexpr std::size_t max_depth = path_capacity / 2;

// A name has at most 260 units of 16 bits, each at most three bytes.
constexpr std::size_t name_capacity = std::size_t{3} * 260;

// Its entries are read at once and sorted, or where there is no memory left for that,
// one by one, as the directory has them.
struct open_level {
    std::size_t path_length; // of the directory
    bool is_sorted;
    entry_list entries; // sorted
    HANDLE search;      // not sorted
    bool has_first;     // its first entry, which comes with the search, is waiting
};

struct tree_walk {
    tree_visitor visit;
    void *user;
    char path[path_capacity];
    std::size_t path_length;
    open_level levels[max_depth];
    std::size_t depth;
    WIN32_FIND_DATAW found; // by a search, last
    char found_name[name_capacity];
    visited_directories visited;
    entry_memory entries;
};

bool is_separator(char character)
{
    return character == '/' || character == '\\';
}

// What a path, its links followed, leads to.
struct destination {
    bool exists;
    bool is_directory;
    directory_id id;
};

destination find_destination(const char *path)
{
    wchar_t wide[wide_path_capacity];
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!to_system_path(path, wide))
        return {};
    HANDLE handle = CreateFileW(wide, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return {};
    const bool exists =
        GetFileType(handle) == FILE_TYPE_DISK && GetFileInformationByHandle(handle, &info) != FALSE;
    CloseHandle(handle);
    const std::uint64_t number = std::uint64_t{info.nFileIndexHigh} << 32 | info.nFileIndexLow;
    return {exists,
            (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
            {info.dwVolumeSerialNumber, number}};
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

// Other marks are the system's own, such as those of files that are not here yet.
bool is_link(const WIN32_FIND_DATAW &found)
{
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
            found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

// What the directory says of an entry is enough for files: asking the system for each
// of thousands would take most of the walk. What a link leads to is found out later:
// it counts as a directory until then.
entry_type type_of(const WIN32_FIND_DATAW &found)
{
    if (is_link(found))
        return entry_type::link_to_directory;
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? entry_type::directory
                                                                    : entry_type::file;
}

bool is_the_directory_or_its_parent(const wchar_t *name)
{
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

// The search's next entry; false at its end. Names that are no text are left out.
bool search_next(tree_walk &walk, open_level &level, entry &next)
{
    do {
        if (!level.has_first && FindNextFileW(level.search, &walk.found) == FALSE)
            return false;
        level.has_first = false;
    } while (is_the_directory_or_its_parent(walk.found.cFileName) ||
             !to_utf_8(walk.found.cFileName, walk.found_name));
    next = {walk.found_name, type_of(walk.found)};
    return true;
}

HANDLE start_search(tree_walk &walk)
{
    wchar_t pattern[wide_path_capacity];
    if (!to_system_path(walk.path, pattern))
        return INVALID_HANDLE_VALUE;
    const std::size_t length = std::wcslen(pattern);
    if (length + 3 > wide_path_capacity)
        return INVALID_HANDLE_VALUE;
    const wchar_t last = pattern[length - 1];
    const bool separated = last == L'/' || last == L'\\' || last == L':';
    std::wcscpy(pattern + length, separated ? L"*" : L"\\*");
    return FindFirstFileExW(pattern, FindExInfoBasic, &walk.found, FindExSearchNameMatch, nullptr,
                            FIND_FIRST_EX_LARGE_FETCH);
}

// False, and nothing of it taken, when there is no memory for all of the directory.
bool read_sorted(tree_walk &walk, open_level &level)
{
    level.entries = begin_list(walk.entries);
    entry next = {};
    while (search_next(walk, level, next))
        if (!append_entry(walk.entries, level.entries, next)) {
            drop_list(walk.entries, level.entries);
            return false;
        }
    sort_list(walk.entries, level.entries);
    return true;
}

void enter_directory(tree_walk &walk)
{
    HANDLE search = walk.depth < max_depth ? start_search(walk) : INVALID_HANDLE_VALUE;
    if (search == INVALID_HANDLE_VALUE)
        return;
    open_level &level = walk.levels[walk.depth++];
    level = {walk.path_length, false, {}, search, true};
    level.is_sorted = read_sorted(walk, level);
    FindClose(search);
    if (level.is_sorted)
        return;
    level.search = start_search(walk);
    level.has_first = true;
    if (level.search == INVALID_HANDLE_VALUE)
        --walk.depth;
}

void leave_directory(tree_walk &walk)
{
    const open_level &level = walk.levels[--walk.depth];
    if (level.is_sorted)
        drop_list(walk.entries, level.entries);
    else
        FindClose(level.search);
}

// Makes `next` the next entry of the deepest directory. False at its end.
bool take_next(tree_walk &walk, entry &next)
{
    open_level &level = walk.levels[walk.depth - 1];
    set_path_length(walk, level.path_length);
    return level.is_sorted ? next_entry(walk.entries, level.entries, next)
                           : search_next(walk, level, next);
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
