#include "platform/windows/wide_text.hpp"

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace vimbo
{

namespace
{

constexpr std::uint32_t not_a_character = 0xFFFFFFFF;
constexpr std::uint32_t first_in_pairs = 0x10000;
constexpr std::uint32_t high_surrogates = 0xD800;
constexpr std::uint32_t low_surrogates = 0xDC00;
constexpr std::uint32_t surrogates_end = 0xE000;

// Reads one character of UTF-8 and steps over it.
std::uint32_t next_character(const char *&text)
{
    const auto first = static_cast<unsigned char>(*text++);
    if (first < 0x80)
        return first;
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4)
        return not_a_character;
    std::uint32_t character = first & (0x3FU >> more);
    for (int i = 0; i < more; ++i) {
        const auto byte = static_cast<unsigned char>(*text);
        if ((byte & 0xC0U) != 0x80U)
            return not_a_character;
        character = character << 6 | (byte & 0x3FU);
        ++text;
    }
    constexpr std::uint32_t least[] = {0x80, 0x800, first_in_pairs};
    constexpr std::uint32_t last = 0x10FFFF;
    return character >= least[more - 1] && character <= last ? character : not_a_character;
}

// The same of UTF-16.
std::uint32_t next_character(const wchar_t *&text)
{
    const std::uint32_t first = *text++;
    const std::uint32_t second = *text;
    if (first < high_surrogates || first >= low_surrogates || second < low_surrogates ||
        second >= surrogates_end)
        return first;
    ++text;
    return first_in_pairs + ((first - high_surrogates) << 10) + (second - low_surrogates);
}

std::size_t put_character(std::uint32_t character, wchar_t *out)
{
    if (character < first_in_pairs) {
        out[0] = static_cast<wchar_t>(character);
        return 1;
    }
    out[0] = static_cast<wchar_t>(high_surrogates + ((character - first_in_pairs) >> 10));
    out[1] = static_cast<wchar_t>(low_surrogates + ((character - first_in_pairs) & 0x3FFU));
    return 2;
}

std::size_t put_character(std::uint32_t character, char *out)
{
    if (character < 0x80) {
        out[0] = static_cast<char>(character);
        return 1;
    }
    const std::size_t more = character < 0x800 ? 1 : character < first_in_pairs ? 2 : 3;
    constexpr unsigned char lead[] = {0xC0, 0xE0, 0xF0};
    for (std::size_t i = more; i > 0; --i) {
        out[i] = static_cast<char>(0x80U | (character & 0x3FU));
        character >>= 6;
    }
    out[0] = static_cast<char>(lead[more - 1] | character);
    return more + 1;
}

template <typename from, typename to>
bool convert(const from *text, std::span<to> out)
{
    constexpr std::size_t most = 4; // of a character
    std::size_t length = 0;
    while (*text != 0) {
        const std::uint32_t character = next_character(text);
        to units[most];
        const std::size_t count =
            character == not_a_character ? 0 : put_character(character, units);
        if (count == 0 || length + count >= out.size()) {
            out[0] = 0;
            return false;
        }
        std::memcpy(&out[length], units, count * sizeof(to));
        length += count;
    }
    out[length] = 0;
    return true;
}

bool is_separator(wchar_t character)
{
    return character == L'/' || character == L'\\';
}

// "\\?\" and "\\.\", behind which the system takes names as they stand.
bool is_verbatim(const wchar_t *path)
{
    return is_separator(path[0]) && is_separator(path[1]) && (path[2] == L'?' || path[2] == L'.') &&
           is_separator(path[3]);
}

bool names_a_stream(const wchar_t *path)
{
    const std::size_t drive_colon = is_verbatim(path) ? 5 : 1;
    const wchar_t *last = std::wcsrchr(path, L':');
    return last != nullptr && static_cast<std::size_t>(last - path) != drive_colon;
}

} // namespace

bool to_wide(const char *text, std::span<wchar_t> out)
{
    return convert(text, out);
}

bool to_utf_8(const wchar_t *text, std::span<char> out)
{
    return convert(text, out);
}

bool to_system_path(const char *path, std::span<wchar_t, wide_path_capacity> out)
{
    constexpr DWORD longest_of_a_directory = 247;
    wchar_t full[wide_path_capacity];
    if (!to_wide(path, out) || out[0] == L'\0' || names_a_stream(out.data())) {
        out[0] = L'\0';
        return false;
    }
    const DWORD length = GetFullPathNameW(out.data(), wide_path_capacity, full, nullptr);
    if (length <= longest_of_a_directory || is_verbatim(full))
        return true;
    // Only so the system takes a longer one, wherever it is not set up for those.
    const bool is_share = is_separator(full[0]) && is_separator(full[1]);
    const wchar_t *prefix = is_share ? L"\\\\?\\UNC" : L"\\\\?\\";
    const wchar_t *rest = is_share ? full + 1 : full;
    if (length >= wide_path_capacity || std::wcslen(prefix) + std::wcslen(rest) >= out.size()) {
        out[0] = L'\0';
        return false;
    }
    std::wcscpy(out.data(), prefix);
    std::wcscat(out.data(), rest);
    return true;
}

} // namespace vimbo
