#include "tests/support/child_watch.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

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

std::vector<pid_t> child_ids(pid_t process)
{
    std::vector<pid_t> ids;
    std::error_code gone;
    for (std::filesystem::directory_iterator at(place_of(process) / "task", gone), end;
         !gone && at != end; at.increment(gone)) {
        std::ifstream list(at->path() / "children");
        ids.insert(ids.end(), std::istream_iterator<pid_t>(list), std::istream_iterator<pid_t>());
    }
    return ids;
}

// The state follows the name, which is in brackets and may hold anything.
bool is_zombie(pid_t process)
{
    std::ifstream file(place_of(process) / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t name_end = line.rfind(')');
    return name_end != std::string::npos && line.substr(name_end + 1).starts_with(" Z");
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
    return child_ids(process).size();
}

std::size_t zombies_of(pid_t process)
{
    const std::vector<pid_t> children = child_ids(process);
    return static_cast<std::size_t>(std::ranges::count_if(children, is_zombie));
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
