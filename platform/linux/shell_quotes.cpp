#include "platform/linux/shell_quotes.hpp"

#include <cstddef>
#include <string_view>

namespace vimbo
{

namespace
{

enum class quoting { none, single_quotes, double_quotes };

// A line that is being written; what does not fit is only counted.
struct shell_line {
    std::span<char> text;
    std::size_t length;
};

void put(shell_line &line, char c)
{
    if (line.length < line.text.size())
        line.text[line.length] = c;
    ++line.length;
}

// What a shell would expand, or take away, between double quotes.
bool is_special_in_double_quotes(char c)
{
    return std::string_view("$`\\").find(c) != std::string_view::npos;
}

quoting after(quoting state, char c)
{
    if (c == '"' && state != quoting::single_quotes)
        return state == quoting::double_quotes ? quoting::none : quoting::double_quotes;
    if (c == '\'' && state != quoting::double_quotes)
        return state == quoting::single_quotes ? quoting::none : quoting::single_quotes;
    return state;
}

} // namespace

bool format_shell_line(const char *command, std::span<char> line)
{
    shell_line out = {line, 0};
    quoting state = quoting::none;
    for (const char *c = command; *c != '\0'; ++c) {
        if (state == quoting::double_quotes && is_special_in_double_quotes(*c))
            put(out, '\\');
        put(out, *c);
        // Outside of quotes a backslash is the shell's own, and hides what follows.
        if (state == quoting::none && *c == '\\' && c[1] != '\0')
            put(out, *++c);
        else
            state = after(state, *c);
    }
    if (state == quoting::double_quotes)
        put(out, '"');
    put(out, '\0');
    return out.length <= line.size();
}

} // namespace vimbo
