#pragma once

#include "app/app_state.hpp"

namespace vimbo
{

/// Takes the options into the settings. False when one is unknown, lacks its
/// argument or names a tray directory that is too long; one text that says so
/// then stands on standard error.
bool read_command_line(app_state &app, int argument_count, char *const arguments[]);

} // namespace vimbo
