#include "toolchain/system.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace toolchain
{

namespace
{

// mkstemp makes files for their owner alone.
void set_default_permissions(int file)
{
    constexpr mode_t mode_before_umask = 0666;
    const mode_t mask = umask(0);
    umask(mask);
    (void)!fchmod(file, mode_before_umask & ~mask);
}

} // namespace

void *reserve_memory(std::size_t size)
{
    void *memory = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        return nullptr;
    madvise(memory, size, MADV_HUGEPAGE);
    return memory;
}

void release_memory(void *memory, std::size_t size)
{
    munmap(memory, size);
}

std::span<const unsigned char> map_file(const char *path)
{
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0)
        return {};
    const auto size = static_cast<std::size_t>(status.st_size);
    void *bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (bytes == MAP_FAILED)
        return {};
    madvise(bytes, size, MADV_SEQUENTIAL);
    return {static_cast<const unsigned char *>(bytes), size};
}

FILE *create_file_beside(std::string &path)
{
    path += ".XXXXXX";
    const int file = mkstemp(path.data());
    if (file < 0) {
        path.clear();
        return nullptr;
    }
    set_default_permissions(file);
    FILE *stream = fdopen(file, "wb");
    if (stream == nullptr) {
        const int refusal = errno;
        close(file);
        unlink(path.c_str());
        path.clear();
        errno = refusal;
    }
    return stream;
}

bool replace_file(const std::string &from, const std::string &to)
{
    return std::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace toolchain
