#include "sources/text_places.hpp"

#include "ui/nuklear.hpp"
#include "ui/utf8.hpp"

#include <algorithm>

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
    return std::min(text.find('\n', from), text.size());
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
