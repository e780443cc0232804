#include "ui/utf8.hpp"

#include "ui/nuklear.hpp"

namespace vimbo
{

std::size_t character_bytes(std::string_view text)
{
    // Most are ASCII, and a text has tens of thousands.
    if (!text.empty() && static_cast<unsigned char>(text[0]) < 0x80)
        return 1;
    nk_rune character = 0;
    return static_cast<std::size_t>(
        nk_utf_decode(text.data(), &character, static_cast<int>(text.size())));
}

int character_count(std::string_view text)
{
    int count = 0;
    while (const std::size_t bytes = character_bytes(text)) {
        text.remove_prefix(bytes);
        ++count;
    }
    return count;
}

std::size_t character_offset(std::string_view text, int index)
{
    std::size_t at = 0;
    for (; index > 0; --index) {
        const std::size_t bytes = character_bytes(text.substr(at));
        if (bytes == 0)
            break;
        at += bytes;
    }
    return at;
}

} // namespace vimbo
