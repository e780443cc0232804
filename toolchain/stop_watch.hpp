// Ends the program when it is asked to, whatever it is at.
#pragma once

#include <string>

namespace toolchain
{

/// Removes a stale marker and from then on looks for it about ten times a
/// second. When it is there it is removed, with the unfinished file, and the
/// program ends with `status` after the line "stopped".
void watch_for_stop(int status);

/// Names the file to be removed at a stop; an empty name means none.
void set_unfinished_file(const std::string &path);

} // namespace toolchain
