#include "platform/windows/directory_search.hpp"

#include "platform/windows/wide_text.hpp"

#include <cstdint>
#include <cwchar>

namespace vimbo
{

namespace
{

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

} // namespace

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

bool start_search(const char *directory, directory_search &search, found_entry &found)
{
    wchar_t pattern[wide_path_capacity];
    if (!to_system_path(directory, pattern))
        return false;
    const std::size_t length = std::wcslen(pattern);
    if (length + 3 > wide_path_capacity)
        return false;
    const wchar_t last = pattern[length - 1];
    const bool separated = last == L'/' || last == L'\\' || last == L':';
    std::wcscpy(pattern + length, separated ? L"*" : L"\\*");
    search = {FindFirstFileExW(pattern, FindExInfoBasic, &found.data, FindExSearchNameMatch,
                               nullptr, FIND_FIRST_EX_LARGE_FETCH),
              true};
    return search.handle != INVALID_HANDLE_VALUE;
}

bool search_next(directory_search &search, found_entry &found, entry &next)
{
    // A name that does not fit is left out.
    do {
        if (!search.has_first && FindNextFileW(search.handle, &found.data) == FALSE)
            return false;
        search.has_first = false;
    } while (is_the_directory_or_its_parent(found.data.cFileName) ||
             !to_utf_8(found.data.cFileName, found.name));
    next = {found.name, type_of(found.data)};
    return true;
}

void end_search(directory_search &search)
{
    FindClose(search.handle);
}

} // namespace vimbo
