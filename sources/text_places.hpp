// Places in a text, in bytes: the ends of lines and words, the character at a
// column. Nothing here knows of a cursor or a window.
#pragma once

#include <cstddef>
#include <string_view>

struct nk_user_font;

namespace vimbo
{

/// Bytes of a text, from `first` to before `last`.
struct text_range {
    std::size_t first;
    std::size_t last;
};

/// Start of the line that is `lines` below, or above, that of the byte at `from`,
/// as far as there are lines.
std::size_t line_start(std::string_view text, std::size_t from, int lines = 0);

/// Byte behind the last character of the line that the byte at `from` is in: that of
/// its line feed, or of a carriage return before that.
std::size_t line_end(std::string_view text, std::size_t from);

/// The blank or bracket before, or behind, the byte at `from`, where the toolkit
/// has the ends of words; the text's end where there is none.
std::size_t word_boundary(std::string_view text, std::size_t from, bool forward);

/// The other end of what Control with Backspace or Delete takes: blanks, then
/// letters and digits or other characters; or a line's end alone.
std::size_t word_step(std::string_view text, std::size_t from, bool forward);

/// The word, the blanks or the other characters around the byte at `at`; of a
/// line's end what stands before it.
text_range word_at(std::string_view text, std::size_t at);

/// The line that the byte at `at` is in, without its end.
text_range line_at(std::string_view text, std::size_t at);

/// Pixels that the text takes.
float text_width(const nk_user_font &font, std::string_view text);

/// Byte of the character in the line that begins at `start` that is the last one
/// to begin no further right than `x` pixels.
std::size_t byte_at_x(std::string_view text, std::size_t start, float x, const nk_user_font &font);

} // namespace vimbo
