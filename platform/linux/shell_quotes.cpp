#include "platform/linux/shell_quotes.hpp"

namespace vimbo
{

bool leaves_double_quote_open(const char *command)
{
    enum class quoting { none, single_quotes, double_quotes } state = quoting::none;
    for (const char *c = command; *c != '\0'; ++c) {
        if (state == quoting::single_quotes) {
            if (*c == '\'')
                state = quoting::none;
        } else if (*c == '\\') {
            if (c[1] != '\0')
                ++c;
        } else if (*c == '"') {
            state = state == quoting::double_quotes ? quoting::none : quoting::double_quotes;
        } else if (*c == '\'' && state == quoting::none) {
            state = quoting::single_quotes;
        }
    }
    return state == quoting::double_quotes;
}

} // namespace vimbo
