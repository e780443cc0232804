#include "tests/support/special_file.hpp"

#include <stdexcept>
#include <sys/stat.h>

namespace rig
{

std::string special_file(const scratch_directory &place)
{
    std::string path = place.file("pipe");
    if (mkfifo(path.c_str(), 0600) != 0)
        throw std::runtime_error("no pipe");
    return path;
}

} // namespace rig
