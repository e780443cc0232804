#include "platform/posix/shell_quotes.hpp"

namespace vimbo
{

bool leaves_double_quote_open(const char *command)
{
    enum class quoting { none, single, twofold } state = quoting::none;
    for (const char *c = command; *c != '\0'; ++c) {
        if (state == quoting::single) {
            if (*c == '\'')
                state = quoting::none;
        } else if (*c == '\\') {
            if (c[1] != '\0')
                ++c;
        } else if (*c == '"') {
            state = state == quoting::twofold ? quoting::none : quoting::twofold;
        } else if (*c == '\'' && state == quoting::none) {
            state = quoting::single;
        }
    }
    return state == quoting::twofold;
}

} // namespace vimbo
