#include "toolchain/system.hpp"

#include "platform/windows/wide_text.hpp"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdint>
#include <random>
#include <system_error>

namespace toolchain
{

namespace
{

using system_path = wchar_t[vimbo::wide_path_capacity];

// The last refusal, in the C library's numbers.
int refusal()
{
    const auto code = static_cast<int>(GetLastError());
    return std::system_category().default_error_condition(code).value();
}

} // namespace

void *reserve_memory(std::size_t size)
{
    return VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void release_memory(void *memory, std::size_t /*size*/)
{
    VirtualFree(memory, 0, MEM_RELEASE);
}

std::span<const unsigned char> map_file(const char *path)
{
    system_path wide;
    if (!vimbo::to_system_path(path, wide))
        return {};
    HANDLE file =
        CreateFileW(wide, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    LARGE_INTEGER size = {};
    // An empty file cannot be mapped.
    if (file == INVALID_HANDLE_VALUE || GetFileType(file) != FILE_TYPE_DISK ||
        GetFileSizeEx(file, &size) == FALSE)
        return {};
    HANDLE mapping = CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
    if (mapping == nullptr)
        return {};
    const void *bytes = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    if (bytes == nullptr)
        return {};
    return {static_cast<const unsigned char *>(bytes), static_cast<std::size_t>(size.QuadPart)};
}

FILE *create_file_beside(std::string &path)
{
    constexpr int most_tries = 100;
    constexpr unsigned int numbers = 1000000;
    std::random_device random;
    HANDLE file = INVALID_HANDLE_VALUE;
    std::string name;
    DWORD error = ERROR_INVALID_NAME;
    for (int i = 0; i < most_tries && file == INVALID_HANDLE_VALUE; ++i) {
        name = path + '.' + std::to_string(random() % numbers);
        system_path wide;
        if (!vimbo::to_system_path(name.c_str(), wide))
            break;
        file = CreateFileW(wide, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                           CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        error = GetLastError();
        if (error != ERROR_FILE_EXISTS)
            break;
    }
    path.clear();
    if (file == INVALID_HANDLE_VALUE) {
        SetLastError(error);
        errno = refusal();
        return nullptr;
    }
    FILE *stream = _fdopen(_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_BINARY), "wb");
    if (stream != nullptr)
        path = name;
    return stream;
}

bool replace_file(const std::string &from, const std::string &to)
{
    // Who has the file open for a moment, to read it or to look for viruses, is in the
    // way of its replacement.
    constexpr int most_tries = 20;
    constexpr DWORD pause = 50; // milliseconds
    system_path wide_from;
    system_path wide_to;
    if (!vimbo::to_system_path(from.c_str(), wide_from) ||
        !vimbo::to_system_path(to.c_str(), wide_to)) {
        errno = ENOENT;
        return false;
    }
    for (int i = 0; i < most_tries; ++i) {
        if (MoveFileExW(wide_from, wide_to, MOVEFILE_REPLACE_EXISTING) != FALSE)
            return true;
        if (GetLastError() != ERROR_SHARING_VIOLATION && GetLastError() != ERROR_ACCESS_DENIED)
            break;
        Sleep(pause);
    }
    errno = refusal();
    return false;
}

} // namespace toolchain
