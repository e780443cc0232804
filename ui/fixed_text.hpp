// Zero-terminated texts in fixed buffers. Whatever does not fit is cut, and the
// text always ends in its zero: this is the one place where that is decided.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace vimbo
{

/// Length in bytes of the text in `buffer`, at most its size.
std::size_t text_length(std::span<const char> buffer);

/// Replaces the text. False when it had to be cut.
bool set_text(std::span<char> buffer, std::string_view text);

/// Appends to the text. False when it had to be cut.
bool append_text(std::span<char> buffer, std::string_view text);

/// Replaces the text by a `printf`-style one. False when it had to be cut.
[[gnu::format(printf, 2, 3)]] bool format_text(std::span<char> buffer, const char *format, ...);

/// Zeroes the whole buffer.
void clear_text(std::span<char> buffer);

} // namespace vimbo
