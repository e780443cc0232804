// What a program's first step is on this system.
#pragma once

namespace vimbo
{

/// To be called first in main, once. Replaces the arguments by the same in UTF-8, which
/// stay until the end of the program; where a window's program has no console of its
/// own, what it prints goes to the one that it was started from; what it prints is not
/// changed on its way; and no fault of the program, of a tool or of a drive waits for
/// somebody at a dialog. Cannot fail.
void start_program(int &argument_count, char **&arguments);

} // namespace vimbo
