#include "sources/text_places.hpp"

#include "ui/nuklear.hpp"
#include "ui/utf8.hpp"

#include <algorithm>
#include <cctype>

namespace vimbo
{

namespace
{

bool is_word_boundary(std::string_view text, std::size_t at)
{
    constexpr std::string_view boundaries = " \t,;(){}[]|";
    return boundaries.find(text[at]) != std::string_view::npos ||
           text.substr(at).starts_with("\u3000");
}

enum class character_class { blank, line_end, word, other };

// The bytes of characters beyond ASCII count as those of words.
character_class class_of(char byte)
{
    if (byte == ' ' || byte == '\t')
        return character_class::blank;
    if (byte == '\n' || byte == '\r')
        return character_class::line_end;
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80 || code == '_' || std::isalnum(code) != 0 ? character_class::word
                                                                  : character_class::other;
}

// The far end of the run of bytes of this class that begins at `from`.
std::size_t skip_class(std::string_view text, std::size_t from, bool forward,
                       character_class skipped)
{
    if (forward) {
        while (from < text.size() && class_of(text[from]) == skipped)
            ++from;
    } else {
        while (from > 0 && class_of(text[from - 1]) == skipped)
            --from;
    }
    return from;
}

// The same of a line's end, which is one or two bytes long.
std::size_t skip_line_end(std::string_view text, std::size_t from, bool forward)
{
    if (forward)
        return from + (text.substr(from).starts_with("\r\n") ? 2 : 1);
    return from - (text.substr(0, from).ends_with("\r\n") ? 2 : 1);
}

} // namespace

std::size_t line_start(std::string_view text, std::size_t from, int lines)
{
    std::size_t start = from == 0 ? 0 : text.rfind('\n', from - 1) + 1;
    for (; lines < 0 && start > 0; ++lines)
        start = start == 1 ? 0 : text.rfind('\n', start - 2) + 1;
    for (; lines > 0; --lines) {
        const std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            break;
        start = end + 1;
    }
    return start;
}

std::size_t line_end(std::string_view text, std::size_t from)
{
    const std::size_t end = std::min(text.find('\n', from), text.size());
    const bool behind_return = end > 0 && text[end - 1] == '\r';
    return behind_return ? end - 1 : end;
}

std::size_t word_boundary(std::string_view text, std::size_t from, bool forward)
{
    const auto step = [&](std::size_t at) {
        do
            at += forward ? 1 : std::size_t(-1);
        while (at > 0 && at < text.size() && is_continuation(text[at]));
        return at;
    };
    const std::size_t last = forward ? text.size() : 0;
    if (from == last)
        return last;
    std::size_t at = step(from);
    while (at != last && !is_word_boundary(text, at))
        at = step(at);
    return at;
}

std::size_t word_step(std::string_view text, std::size_t from, bool forward)
{
    const std::size_t last = forward ? text.size() : 0;
    const std::size_t at = skip_class(text, from, forward, character_class::blank);
    if (at == last)
        return at;
    const character_class next = class_of(text[forward ? at : at - 1]);
    if (next != character_class::line_end)
        return skip_class(text, at, forward, next);
    return at != from ? at : skip_line_end(text, at, forward);
}

text_range word_at(std::string_view text, std::size_t at)
{
    const text_range line = line_at(text, at);
    if (line.first == line.last)
        return line;
    at = std::clamp(at, line.first, line.last - 1);
    const character_class found = class_of(text[at]);
    return {skip_class(text, at, false, found), skip_class(text, at, true, found)};
}

text_range line_at(std::string_view text, std::size_t at)
{
    return {line_start(text, at), line_end(text, at)};
}

float text_width(const nk_user_font &font, std::string_view text)
{
    return font.width(font.userdata, font.height, text.data(), static_cast<int>(text.size()));
}

std::size_t byte_at_x(std::string_view text, std::size_t start, float x, const nk_user_font &font)
{
    const std::size_t end = line_end(text, start);
    std::size_t at = start;
    float right = 0;
    while (at < end) {
        const std::size_t bytes =
            std::max(character_bytes(text.substr(at, end - at)), std::size_t{1});
        right += text_width(font, text.substr(at, bytes));
        if (right > x)
            break;
        at += bytes;
    }
    return at;
}

} // namespace vimbo
