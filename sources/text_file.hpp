// Source files as they are read and written: whole, in one go.
#pragma once

#include <cstddef>
#include <span>

namespace vimbo
{

/// A source's most bytes, in the editor and in what is read of a file.
inline constexpr std::size_t source_capacity = 65536;

/// Reads at most source_capacity bytes of the file into `load_buffer`, zeroed
/// before, and returns the buffer. A file that cannot be opened leaves it as it
/// was.
char *read_text_file(const char *path, std::span<char, source_capacity> load_buffer);

/// Writes the zero-terminated text to the file. 0 once all its bytes are
/// written and the file is closed without an error, else -1; a disk that is full
/// then leaves the text that stood there before. Links are followed.
int write_text_file(const char *path, const char *text);

} // namespace vimbo
