#pragma once

namespace vimbo
{

/// True when a POSIX shell would find a double quote of `command` left open.
bool leaves_double_quote_open(const char *command);

} // namespace vimbo
