// What stands in a file's place and is none.
#pragma once

#include "tests/support/scratch.hpp"

#include <string>

namespace rig
{

/// The path of something in the directory that is neither file nor directory, and that
/// who opens it could wait at: a pipe, or the device that has its name everywhere.
std::string special_file(const scratch_directory &place);

} // namespace rig
