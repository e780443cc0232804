#include "platform/files.hpp"

#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

namespace vimbo
{

namespace
{

// ftw hands its callback no user pointer.
struct {
    tree_visitor visit;
    void *user;
} current_walk;

bool is_regular_file(const struct stat &status)
{
    return S_ISREG(status.st_mode);
}

int visit_entry(const char *path, const struct stat *status, int type)
{
    entry_kind kind = entry_kind::other;
    // To ftw everything is a file that is no directory, pipes too.
    if (type == FTW_F && is_regular_file(*status))
        kind = entry_kind::file;
    else if (type == FTW_D || type == FTW_DNR)
        kind = entry_kind::directory;
    current_walk.visit(path, kind, current_walk.user);
    return 0;
}

} // namespace

void walk_tree(const char *directory, tree_visitor visit, void *user)
{
    // How many directories ftw may hold open at once; deeper trees cost it
    // a few more system calls, no more.
    constexpr int open_directories = 256;
    current_walk = {visit, user};
    ftw(directory, visit_entry, open_directories);
}

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

bool path_exists(const char *path)
{
    struct stat status = {};
    return stat(path, &status) == 0;
}

bool make_directory(const char *path)
{
    constexpr mode_t cut_by_the_umask = 0777;
    return mkdir(path, cut_by_the_umask) == 0;
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
