#pragma once

#include <span>

namespace vimbo
{

/// Puts `command` as a POSIX shell spells it into `line`, with a zero at its end: what
/// stands in double quotes is meant as it stands there, and a quote that is left open
/// runs to the end. False when it does not fit.
bool format_shell_line(const char *command, std::span<char> line);

} // namespace vimbo
