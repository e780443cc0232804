// Steps through UTF-8 texts, one character at a time. What counts as a character
// is the toolkit's to say, so that its cursor and ours agree: a byte that begins
// none counts as one, and a character of four bytes as four.
#pragma once

#include <cstddef>
#include <string_view>

namespace vimbo
{

/// Bytes of the character that the text begins with; 0 when the text is empty or
/// ends within it.
std::size_t character_bytes(std::string_view text);

/// The text's characters, up to one that is cut off at its end.
int character_count(std::string_view text);

/// Byte at which character number `index` begins; of a text with fewer, the byte
/// behind its last whole character.
std::size_t character_offset(std::string_view text, int index);

/// True of any byte of a character but its first.
constexpr bool is_continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace vimbo
