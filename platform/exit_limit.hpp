// A limit to how long the program's end may take.
#pragma once

namespace vimbo
{

/// To be called when all work is done and only libraries are left to be closed: the
/// process ends with status 0 after a second, whatever its threads then wait for.
/// What is still in a stream's buffer is lost. Main thread only; once; cannot fail.
void limit_exit_time();

} // namespace vimbo
