#include "ui/fixed_text.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace vimbo
{

std::size_t text_length(std::span<const char> buffer)
{
    return strnlen(buffer.data(), buffer.size());
}

bool set_text(std::span<char> buffer, std::string_view text)
{
    buffer[0] = '\0';
    return append_text(buffer, text);
}

bool append_text(std::span<char> buffer, std::string_view text)
{
    const std::size_t used = text_length(buffer);
    if (used == buffer.size())
        return text.empty();
    const std::size_t count = std::min(text.size(), buffer.size() - used - 1);
    std::memcpy(buffer.data() + used, text.data(), count);
    buffer[used + count] = '\0';
    return count == text.size();
}

bool format_text(std::span<char> buffer, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    return length >= 0 && static_cast<std::size_t>(length) < buffer.size();
}

void clear_text(std::span<char> buffer)
{
    std::memset(buffer.data(), 0, buffer.size());
}

} // namespace vimbo
