#include "platform/files.hpp"

#include "platform/windows/wide_text.hpp"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstring>
#include <cwchar>

namespace vimbo
{

namespace
{

// As the other system has it, where an open file keeps nobody out.
constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE open_path(const char *path, DWORD access, DWORD creation, DWORD flags)
{
    wchar_t wide[wide_path_capacity];
    if (!to_system_path(path, wide))
        return INVALID_HANDLE_VALUE;
    return CreateFileW(wide, access, sharing, nullptr, creation, flags, nullptr);
}

bool is_link(HANDLE file)
{
    FILE_ATTRIBUTE_TAG_INFO info = {};
    return GetFileInformationByHandleEx(file, FileAttributeTagInfo, &info, sizeof info) != FALSE &&
           (info.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (info.ReparseTag == IO_REPARSE_TAG_SYMLINK ||
            info.ReparseTag == IO_REPARSE_TAG_MOUNT_POINT);
}

// The mark alone stops nobody who may do everything.
bool is_read_only(HANDLE file)
{
    FILE_BASIC_INFO info = {};
    return GetFileInformationByHandleEx(file, FileBasicInfo, &info, sizeof info) != FALSE &&
           (info.FileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
}

HANDLE open_for_writing(const char *path, link_use links)
{
    constexpr DWORD access = GENERIC_READ | GENERIC_WRITE;
    if (links == link_use::followed)
        return open_path(path, access, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    constexpr DWORD flags = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT;
    HANDLE file = open_path(path, access, OPEN_ALWAYS, flags);
    if (file == INVALID_HANDLE_VALUE || !is_link(file))
        return file;
    CloseHandle(file);
    return remove_file(path) ? open_path(path, access, CREATE_NEW, flags) : INVALID_HANDLE_VALUE;
}

bool set_position(HANDLE file, std::uint64_t position)
{
    LARGE_INTEGER wanted = {};
    wanted.QuadPart = static_cast<LONGLONG>(position);
    return SetFilePointerEx(file, wanted, nullptr, FILE_BEGIN) != FALSE;
}

bool set_length(HANDLE file, std::uint64_t length)
{
    return set_position(file, length) && SetEndOfFile(file) != FALSE;
}

// At the file's beginning.
bool write_all(HANDLE file, std::string_view content)
{
    if (!set_position(file, 0))
        return false;
    while (!content.empty()) {
        DWORD count = 0;
        const auto size = static_cast<DWORD>(content.size());
        if (WriteFile(file, content.data(), size, &count, nullptr) == FALSE || count == 0)
            return false;
        content.remove_prefix(count);
    }
    return true;
}

// What a new content overwrites, as much of it as the program's own texts can be long,
// to be put back where that fails: not every file system can tell beforehand.
struct overwritten {
    char bytes[65536];
    DWORD count;
};

bool remember(HANDLE file, std::size_t length, overwritten &before)
{
    before.count = 0;
    const auto size =
        static_cast<DWORD>(length < sizeof before.bytes ? length : sizeof before.bytes);
    return set_position(file, 0) &&
           ReadFile(file, before.bytes, size, &before.count, nullptr) != FALSE;
}

// The file holds nothing but `content` then, or what it held before.
bool put_content(HANDLE file, std::string_view content)
{
    static overwritten before;
    LARGE_INTEGER size = {};
    if (GetFileSizeEx(file, &size) == FALSE || !remember(file, content.size(), before))
        return false;
    const auto length = static_cast<std::uint64_t>(size.QuadPart);
    // Where the disk is full it says so here, before anything is lost.
    if (content.size() > length && !set_length(file, content.size())) {
        set_length(file, length);
        return false;
    }
    if (write_all(file, content) && set_length(file, content.size()))
        return true;
    write_all(file, {before.bytes, before.count});
    set_length(file, length);
    return false;
}

} // namespace

FILE *open_regular_file(const char *path, std::uint64_t &size)
{
    HANDLE file = open_path(path, GENERIC_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    LARGE_INTEGER length = {};
    const bool is_regular =
        GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &length) != FALSE;
    const int descriptor =
        is_regular ? _open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDONLY | _O_BINARY)
                   : -1;
    if (descriptor < 0) {
        CloseHandle(file);
        return nullptr;
    }
    size = static_cast<std::uint64_t>(length.QuadPart);
    FILE *stream = _fdopen(descriptor, "rb");
    if (stream == nullptr)
        _close(descriptor);
    return stream;
}

bool overwrite_file(const char *path, std::string_view content, link_use links)
{
    HANDLE file = open_for_writing(path, links);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    // Names such as "nul" and "con" are devices in every directory.
    const bool whole =
        GetFileType(file) == FILE_TYPE_DISK && !is_read_only(file) && put_content(file, content);
    // Some file systems tell only here that they are full.
    const bool closed = CloseHandle(file) != FALSE;
    return whole && closed;
}

bool path_exists(const char *path)
{
    HANDLE found = open_path(path, 0, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (found == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION || GetLastError() == ERROR_ACCESS_DENIED;
    CloseHandle(found);
    return true;
}

bool make_directory(const char *path)
{
    wchar_t wide[wide_path_capacity];
    return to_system_path(path, wide) && CreateDirectoryW(wide, nullptr) != FALSE;
}

bool remove_file(const char *path)
{
    wchar_t wide[wide_path_capacity];
    if (!to_system_path(path, wide))
        return false;
    if (DeleteFileW(wide) != FALSE)
        return true;
    // A link to a directory is removed as a directory is.
    HANDLE link = open_path(path, 0, OPEN_EXISTING,
                            FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT);
    if (link == INVALID_HANDLE_VALUE)
        return false;
    const bool leads_elsewhere = is_link(link);
    CloseHandle(link);
    return leads_elsewhere && RemoveDirectoryW(wide) != FALSE;
}

namespace
{

// The path goes to the command interpreter without quotes.
bool is_one_plain_word(const wchar_t *path)
{
    return std::wcspbrk(path, L" \t&|<>^()") == nullptr;
}

} // namespace

bool temporary_directory(std::span<char> out)
{
    wchar_t path[wide_path_capacity];
    out[0] = '\0';
    const DWORD length = GetTempPathW(wide_path_capacity, path);
    if (length == 0 || length >= wide_path_capacity)
        return false;
    if (!is_one_plain_word(path)) {
        const DWORD shortened = GetShortPathNameW(path, path, wide_path_capacity);
        if (shortened == 0 || shortened >= wide_path_capacity || !is_one_plain_word(path))
            return false;
    }
    return to_utf_8(path, out);
}

bool executable_directory(std::span<char> out)
{
    wchar_t path[wide_path_capacity];
    out[0] = '\0';
    const DWORD length = GetModuleFileNameW(nullptr, path, wide_path_capacity);
    if (length == 0 || length >= wide_path_capacity)
        return false;
    wchar_t *last_separator = std::wcsrchr(path, L'\\');
    *last_separator = L'\0';
    return to_utf_8(path, out);
}

} // namespace vimbo
