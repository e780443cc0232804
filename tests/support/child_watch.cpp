#include "tests/support/child_watch.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace rig
{

namespace
{

std::filesystem::path place_of(pid_t process)
{
    return std::filesystem::path("/proc") / std::to_string(process);
}

std::size_t entries_in(const std::filesystem::path &directory)
{
    std::error_code gone;
    std::size_t count = 0;
    for (std::filesystem::directory_iterator at(directory, gone), end; !gone && at != end;
         at.increment(gone))
        ++count;
    return count;
}

} // namespace

std::size_t open_descriptors(pid_t process)
{
    const std::size_t listed = entries_in(place_of(process) / "fd");
    // Looking at oneself takes one.
    return process == getpid() ? listed - 1 : listed;
}

std::size_t threads_of(pid_t process)
{
    return entries_in(place_of(process) / "task");
}

std::size_t children_of(pid_t process)
{
    std::size_t count = 0;
    std::error_code gone;
    for (std::filesystem::directory_iterator at(place_of(process) / "task", gone), end;
         !gone && at != end; at.increment(gone)) {
        std::ifstream list(at->path() / "children");
        count += static_cast<std::size_t>(
            std::distance(std::istream_iterator<pid_t>(list), std::istream_iterator<pid_t>()));
    }
    return count;
}

std::size_t resident_bytes(pid_t process)
{
    std::ifstream file(place_of(process) / "statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace rig
