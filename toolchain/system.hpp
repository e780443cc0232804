// What the tools want of the operating system beside platform/. Any thread.
#pragma once

#include <cstddef>
#include <cstdio>
#include <span>
#include <string>

namespace toolchain
{

/// Zeroed memory of so many bytes, which the system provides only as it is touched.
/// Null when it grants none.
void *reserve_memory(std::size_t size);

/// Gives back what reserve_memory gave for that size.
void release_memory(void *memory, std::size_t size);

/// The bytes of a regular file, for reading from its start to its end; they stay until
/// the end of the program. None when the file is empty or cannot be read.
std::span<const unsigned char> map_file(const char *path);

/// Makes a file that was not there before, beside the file that `path` names and with
/// the permissions of any new file, opens it for writing and puts its own path into
/// `path`. Null, an empty `path` and errno when it could not.
FILE *create_file_beside(std::string &path);

/// Gives the file `from` the name `to`, in place of the file of that name. False, and
/// errno, when it could not.
bool replace_file(const std::string &from, const std::string &to);

} // namespace toolchain
