#include "platform/files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace vimbo
{

namespace
{

bool is_regular_file(const struct stat &status)
{
    return S_ISREG(status.st_mode);
}

int open_for_writing(const char *path, link_use links)
{
    // Without O_NONBLOCK the open would wait for a pipe's reader. O_TRUNC would
    // empty the file before it is known whether the new content fits.
    constexpr int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    constexpr mode_t mode_before_umask = 0666;
    if (links == link_use::followed)
        return open(path, flags, mode_before_umask);
    int file = open(path, flags | O_NOFOLLOW, mode_before_umask);
    if (file < 0 && errno == ELOOP && unlink(path) == 0)
        file = open(path, flags | O_NOFOLLOW, mode_before_umask);
    return file;
}

// False when the file system says that so many bytes will not fit; one that
// cannot reserve them says nothing of the kind.
bool reserve(int file, std::size_t length)
{
    int refusal = 0;
    do
        refusal = posix_fallocate(file, 0, static_cast<off_t>(length));
    while (refusal == EINTR);
    return refusal != ENOSPC && refusal != EDQUOT && refusal != EFBIG;
}

bool write_all(int file, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t count = write(file, content.data(), content.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// A regular file holds nothing but `content` then, or is as long as before.
bool put_content(int file, std::string_view content)
{
    struct stat before = {};
    if (fstat(file, &before) != 0)
        return false;
    if (!is_regular_file(before))
        return write_all(file, content);
    const bool whole = reserve(file, content.size()) && write_all(file, content);
    const off_t length = whole ? static_cast<off_t>(content.size()) : before.st_size;
    return ftruncate(file, length) == 0 && whole;
}

} // namespace

FILE *open_regular_file(const char *path, std::uint64_t &size)
{
    // Without O_NONBLOCK the open itself would wait at a pipe.
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return nullptr;
    struct stat status = {};
    if (fstat(file, &status) != 0 || !is_regular_file(status)) {
        close(file);
        return nullptr;
    }
    size = static_cast<std::uint64_t>(status.st_size);
    FILE *stream = fdopen(file, "rb");
    if (stream == nullptr)
        close(file);
    return stream;
}

bool overwrite_file(const char *path, std::string_view content, link_use links)
{
    const int file = open_for_writing(path, links);
    if (file < 0)
        return false;
    // A limit to the size of files would end the program by its signal.
    const auto on_limit = std::signal(SIGXFSZ, SIG_IGN);
    const bool whole = put_content(file, content);
    std::signal(SIGXFSZ, on_limit);
    // Some file systems tell only here that they are full.
    const bool closed = close(file) == 0;
    return whole && closed;
}

bool path_exists(const char *path)
{
    struct stat status = {};
    return stat(path, &status) == 0;
}

bool make_directory(const char *path)
{
    constexpr mode_t mode_before_umask = 0777;
    return mkdir(path, mode_before_umask) == 0;
}

bool remove_file(const char *path)
{
    return unlink(path) == 0;
}

bool temporary_directory(std::span<char> out)
{
    constexpr char directory[] = P_tmpdir "/";
    out[0] = '\0';
    if (sizeof directory > out.size())
        return false;
    std::memcpy(out.data(), directory, sizeof directory);
    return true;
}

bool executable_directory(std::span<char> out)
{
    out[0] = '\0';
    const ssize_t length = readlink("/proc/self/exe", out.data(), out.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= out.size()) {
        out[0] = '\0';
        return false;
    }
    out[static_cast<std::size_t>(length)] = '\0';
    char *last_separator = std::strrchr(out.data(), '/');
    *last_separator = '\0';
    return true;
}

} // namespace vimbo
