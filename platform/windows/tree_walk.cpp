#include "platform/tree_walk.hpp"

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

// Links are what lets a walk come to a directory twice, or for ever. With so many
// directories remembered, links to further ones are not followed.
constexpr std::size_t memory_slots = 16384;
constexpr std::size_t remembered_directories = memory_slots / 4 * 3;

constexpr std::size_t path_capacity = 4096;
// Each directory on the way down adds a separator and a character.
constexpr std::size_t max_depth = path_capacity / 2;

struct directory_id {
    std::uint64_t number; // within its volume
    DWORD volume;
    bool used;

    bool operator==(const directory_id &) const = default;
};

struct directory_memory {
    directory_id slots[memory_slots];
    std::size_t count;
};

struct open_level {
    HANDLE search;
    std::size_t path_length; // of the directory
    bool has_first;          // its first entry, which comes with the search, is waiting
};

struct tree_walk {
    tree_visitor visit;
    void *user;
    char path[path_capacity];
    std::size_t path_length;
    open_level levels[max_depth];
    std::size_t depth;
    WIN32_FIND_DATAW entry; // the one found last
    directory_memory met;
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
            {number, info.dwVolumeSerialNumber, true}};
}

directory_id *slot_of(directory_memory &met, const directory_id &id)
{
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15; // 2^64 by the golden ratio
    const std::uint64_t mixed = (id.number ^ (std::uint64_t{id.volume} << 32)) * spread;
    std::size_t at = static_cast<std::size_t>(mixed >> 32) % memory_slots;
    while (met.slots[at].used && met.slots[at] != id)
        at = (at + 1) % memory_slots;
    return &met.slots[at];
}

// True when the walk is to go into a directory that it came to.
bool is_met_first(directory_memory &met, const directory_id &id, bool through_link)
{
    directory_id *slot = slot_of(met, id);
    if (slot->used)
        return false;
    if (met.count == remembered_directories)
        return !through_link;
    *slot = id;
    ++met.count;
    return true;
}

void set_path_length(tree_walk &walk, std::size_t length)
{
    walk.path_length = length;
    walk.path[length] = '\0';
}

// Puts a name behind the directory's own path. False when the path gets too long.
bool set_name(tree_walk &walk, const wchar_t *name)
{
    std::size_t length = walk.levels[walk.depth - 1].path_length;
    if (length + 2 >= sizeof walk.path)
        return false;
    // The root's own path ends so, and behind a drive alone its own directory stands.
    if (!is_separator(walk.path[length - 1]) && walk.path[length - 1] != ':')
        walk.path[length++] = '/';
    if (!to_utf_8(name, std::span(walk.path).subspan(length)))
        return false;
    walk.path_length = length + std::strlen(walk.path + length);
    return true;
}

void enter_directory(tree_walk &walk)
{
    wchar_t pattern[wide_path_capacity];
    if (walk.depth == max_depth || !to_system_path(walk.path, pattern))
        return;
    const std::size_t length = std::wcslen(pattern);
    if (length + 3 > wide_path_capacity)
        return;
    const wchar_t last = pattern[length - 1];
    const bool separated = last == L'/' || last == L'\\' || last == L':';
    std::wcscpy(pattern + length, separated ? L"*" : L"\\*");
    HANDLE search = FindFirstFileExW(pattern, FindExInfoBasic, &walk.entry, FindExSearchNameMatch,
                                     nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search != INVALID_HANDLE_VALUE)
        walk.levels[walk.depth++] = {search, walk.path_length, true};
}

// The next entry of the deepest directory; false at its end.
bool find_next(tree_walk &walk)
{
    open_level &level = walk.levels[walk.depth - 1];
    set_path_length(walk, level.path_length);
    if (!level.has_first)
        return FindNextFileW(level.search, &walk.entry) != FALSE;
    level.has_first = false;
    return true;
}

// Other marks are the system's own, such as those of files that are not here yet.
bool is_link(const WIN32_FIND_DATAW &entry)
{
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
            entry.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

// One that tells nothing of itself, as it denies us all access, is no link to another.
void report_directory(tree_walk &walk, const destination &there, bool through_link)
{
    if (there.exists && !is_met_first(walk.met, there.id, through_link))
        return;
    walk.visit(walk.path, entry_kind::directory, walk.user);
    enter_directory(walk);
}

// Reports what stands at the walk's path. What its directory says of a file is enough:
// asking the system for each of thousands would take most of the walk.
void take_entry(tree_walk &walk)
{
    const bool through_link = is_link(walk.entry);
    if (!through_link && (walk.entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        walk.visit(walk.path, entry_kind::file, walk.user);
        return;
    }
    const destination there = find_destination(walk.path);
    if (there.exists ? there.is_directory : !through_link)
        report_directory(walk, there, through_link);
    else
        walk.visit(walk.path, there.exists ? entry_kind::file : entry_kind::other, walk.user);
}

bool is_the_directory_or_its_parent(const wchar_t *name)
{
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
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
    std::memset(&walk.met, 0, sizeof walk.met);
    return true;
}

} // namespace

void walk_tree(const char *directory, tree_visitor visit, void *user)
{
    static tree_walk walk; // 400 KiB, too much for a frame of the stack
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
        if (!find_next(walk))
            FindClose(walk.levels[--walk.depth].search);
        else if (!is_the_directory_or_its_parent(walk.entry.cFileName) &&
                 set_name(walk, walk.entry.cFileName))
            take_entry(walk);
    }
}

} // namespace vimbo
