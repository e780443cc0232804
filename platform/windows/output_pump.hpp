// A tool's output on its way to the stream that this program reads. A stream of the C
// library can only stand on a pipe that is open as long as anybody holds it, and that
// cannot be read with a limit of time. So the tool writes to a pipe of another kind, and
// a thread, the pump, passes on what comes there, until this program wants it to end.
#pragma once

#include <cstdio>

#include <windows.h>

namespace vimbo
{

/// All null: not opened.
struct output_pump {
    HANDLE thread;
    HANDLE stop;        // an event: the thread is to end
    HANDLE process;     // the tool's, not the pump's own
    HANDLE tool_output; // the thread reads it,
    HANDLE arrival;     // with this event,
    HANDLE inlet;       // and writes to the stream's pipe
};

/// Makes the pipes. `tool_end` is what the tool is to write to, and the caller's to close.
/// Gives the stream, or null; what has been made until then close_pump frees.
FILE *open_pump(output_pump &pump, HANDLE &tool_end);

/// Starts the thread on what `process` writes. It ends, and the stream with it, when the
/// output does, or `process` has ended and nothing more comes for a second. False when
/// the system refuses. The pump must stay where it is until the thread has ended.
bool start_pump(output_pump &pump, HANDLE process);

/// Has the thread end whatever still comes.
void stop_pump(const output_pump &pump);

/// Waits for the thread at most so long. True once it has ended.
bool await_pump(const output_pump &pump, DWORD milliseconds);

/// Frees what the pump holds. Its thread has ended, or was not started.
void close_pump(output_pump &pump);

} // namespace vimbo
