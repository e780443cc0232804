// The system's UTF-16 beside the program's UTF-8. Names on this system are any 16-bit
// numbers: half of a surrogate pair that stands alone becomes the three bytes that
// UTF-8 would have for its number, and comes back from them. Any thread.
#pragma once

#include <cstddef>
#include <span>

namespace vimbo
{

/// Converts the zero-terminated text, its zero included. False, and an empty text, when
/// it is not UTF-8 or does not fit.
bool to_wide(const char *text, std::span<wchar_t> out);

/// The same back; every text can be converted.
bool to_utf_8(const wchar_t *text, std::span<char> out);

/// UTF-16 units and bytes that a path may take, the zero included: more than any of
/// the program's own buffers for one.
inline constexpr std::size_t wide_path_capacity = 8192;

/// Converts a path to one that the system's calls take, however long it is. False, and
/// an empty text, where that cannot be, and for a path with a colon behind its drive: it
/// would name a stream within a file, which no list shows.
bool to_system_path(const char *path, std::span<wchar_t, wide_path_capacity> out);

} // namespace vimbo
