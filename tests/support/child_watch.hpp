// What this process, or another one, holds of the system: to see that nothing
// is left behind.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace rig
{

/// Open file descriptors.
std::size_t open_descriptors(pid_t process);
/// Threads, the main one included.
std::size_t threads_of(pid_t process);
/// Children, ended ones that nobody waited for included.
std::size_t children_of(pid_t process);
/// Those of the children that have ended, and that nobody waited for.
std::size_t zombies_of(pid_t process);
/// Memory in RAM, in bytes.
std::size_t resident_bytes(pid_t process);

} // namespace rig
