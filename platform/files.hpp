// The file system as this program uses it. Paths are zero-terminated and go to
// the system as they stand, relative ones from the working directory; sizes are
// bytes. Nothing here prints. Main thread only, where nothing else is said.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string_view>

namespace vimbo
{

/// Opens a regular file for reading and gives its size in bytes. Null when
/// there is none or it is anything else: opening a pipe would wait for a writer.
FILE *open_regular_file(const char *path, std::uint64_t &size);

/// What becomes of a symbolic link at the path of a file that is written.
enum class link_use {
    followed, // what it names is written
    replaced, // the link itself goes, and a file takes its place
};

/// Puts `content` in place of what the file holds; creates it where it is
/// missing, and never waits at a pipe. False when not all of it is there. A disk
/// that is full, or a quota, then leaves what stood there before, as far as the
/// file system can tell so beforehand.
bool overwrite_file(const char *path, std::string_view content, link_use links);

/// True when something of any kind stands at `path`; links are followed. Any thread.
bool path_exists(const char *path);

/// Creates one directory; its parent must exist. False when it could not, also
/// because it is there.
bool make_directory(const char *path);

/// Removes the file, or the link, but no directory. False when it could not. Any
/// thread.
bool remove_file(const char *path);

/// The system's directory for temporary files, with its trailing separator.
/// False, and an empty text, when it does not fit.
bool temporary_directory(std::span<char> out);

/// The directory of the running program's own file, without a trailing
/// separator. False, and an empty text, when it is unknown or does not fit.
bool executable_directory(std::span<char> out);

} // namespace vimbo
