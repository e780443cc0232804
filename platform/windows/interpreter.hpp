// The command interpreter, as a process of its own.
#pragma once

namespace vimbo
{

/// Starts the interpreter on `command`, whose names mean what stands there, with the
/// pipe's end `output` as its standard output, this program's own other streams, and no
/// window. `process` is then its handle, to be closed by the caller; both are HANDLEs.
/// False when it cannot be started. Main thread only.
bool start_command(const char *command, void *output, void *&process);

} // namespace vimbo
