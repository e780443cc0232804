#include "tests/support/special_file.hpp"

namespace rig
{

std::string special_file(const scratch_directory &place)
{
    return place.file("nul");
}

} // namespace rig
