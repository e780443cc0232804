#include "tests/faults/system_calls.hpp"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace rig
{

refused_calls refused;
std::time_t clock_stands;
std::atomic<int> longest_poll;
std::function<void()> before_open;

void let_all_calls_work()
{
    refused = {};
    clock_stands = 0;
    before_open = nullptr;
}

namespace
{

// The file below refused.below that is open for writing; -1: none.
int watched_file = -1;

bool concerns(const char *path)
{
    return !refused.below.empty() && std::string_view(path).starts_with(refused.below);
}

bool refuse(int error)
{
    errno = error != 0 ? error : errno;
    return error != 0;
}

} // namespace

} // namespace rig

using namespace rig;

// The linker's names for the original and for what replaces it.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
FILE *__real_fopencookie(void *cookie, const char *mode, cookie_io_functions_t functions);
FILE *__wrap_fopencookie(void *cookie, const char *mode, cookie_io_functions_t functions)
{
    return refused.stream ? nullptr : __real_fopencookie(cookie, mode, functions);
}

int __real_pidfd_open(pid_t process, unsigned int flags);
int __wrap_pidfd_open(pid_t process, unsigned int flags)
{
    return refused.process_end ? -1 : __real_pidfd_open(process, flags);
}

int __real_pipe2(int *ends, int flags);
int __wrap_pipe2(int *ends, int flags)
{
    errno = EMFILE;
    return refused.pipe ? -1 : __real_pipe2(ends, flags);
}

int __real_posix_spawn(pid_t *process, const char *path,
                       const posix_spawn_file_actions_t *file_actions,
                       const posix_spawnattr_t *attributes, char *const arguments[],
                       char *const environment[]);
int __wrap_posix_spawn(pid_t *process, const char *path,
                       const posix_spawn_file_actions_t *file_actions,
                       const posix_spawnattr_t *attributes, char *const arguments[],
                       char *const environment[])
{
    return refused.process ? EAGAIN
                           : __real_posix_spawn(process, path, file_actions, attributes, arguments,
                                                environment);
}

int __real_pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                          void *(*entry)(void *), void *argument);
int __wrap_pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                          void *(*entry)(void *), void *argument)
{
    return refused.thread ? EAGAIN : __real_pthread_create(thread, attributes, entry, argument);
}

std::time_t __real_time(std::time_t *now);
std::time_t __wrap_time(std::time_t *now)
{
    return clock_stands != 0 ? clock_stands : __real_time(now);
}

int __real_poll(pollfd *watched, nfds_t count, int timeout);
int __wrap_poll(pollfd *watched, nfds_t count, int timeout)
{
    longest_poll = std::max<int>(longest_poll, timeout);
    return __real_poll(watched, count, timeout);
}

int __real_open(const char *path, int flags, ...);
int __wrap_open(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    if (before_open)
        before_open();
    if ((flags & O_WRONLY) == 0 || !concerns(path))
        return __real_open(path, flags, mode);
    const bool creates = access(path, F_OK) != 0;
    if (refuse(refused.opening) || (creates && refuse(refused.creating)))
        return -1;
    watched_file = __real_open(path, flags, mode);
    return watched_file;
}

int __real_posix_fallocate(int file, off_t offset, off_t length);
int __wrap_posix_fallocate(int file, off_t offset, off_t length)
{
    return file == watched_file && refused.reserving != 0
               ? refused.reserving
               : __real_posix_fallocate(file, offset, length);
}

ssize_t __real_write(int file, const void *bytes, std::size_t count);
ssize_t __wrap_write(int file, const void *bytes, std::size_t count)
{
    if (file != watched_file || refused.writing == 0)
        return __real_write(file, bytes, count);
    if (refused.room == 0) {
        refused.room = refused.writing == EINTR ? 1 : 0;
        refuse(refused.writing);
        return -1;
    }
    const ssize_t written = __real_write(file, bytes, std::min(count, refused.room));
    refused.room -= static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    return written;
}

int __real_close(int file);
int __wrap_close(int file)
{
    const int closed = __real_close(file);
    if (file != watched_file || file < 0)
        return closed;
    watched_file = -1;
    return refuse(refused.closing) ? -1 : closed;
}

int __real_mkdir(const char *path, mode_t mode);
int __wrap_mkdir(const char *path, mode_t mode)
{
    return concerns(path) && refuse(refused.creating) ? -1 : __real_mkdir(path, mode);
}

int __real_unlink(const char *path);
int __wrap_unlink(const char *path)
{
    return concerns(path) && refuse(refused.removing) ? -1 : __real_unlink(path);
}
}
// NOLINTEND(bugprone-reserved-identifier)
