// External tools behind a read pipe: the tool's standard output becomes a
// stream; its standard input and error, environment and working directory are this
// program's own, and of its other files it gets none. Opening, closing and letting
// go are the main thread's; reading, and waiting for the end, are the reader
// thread's that the stream is handed to. Nothing here prints or waits, unless said.
#pragma once

#include <cstdio>

namespace vimbo
{

/// How many commands can exist at a time, running or let go.
inline constexpr int max_commands = 64;

/// Runs `command` through the system's shell and returns its output as a
/// stream, or null when it could not be started: that of a tool which the shell
/// does not find is a stream with nothing in it. What the command has in
/// double quotes is meant as it stands there, whatever the shell would make of it,
/// and a quote that it leaves open runs to the end of the line. The tool is looked for
/// along the PATH. The stream has line ends of one character, and is at its end once
/// the command has closed its output, as far as the shell itself does not hold it
/// open, or its process has ended and nothing more comes for a second from those that
/// it left behind. Children of this program leave their status to it from then on,
/// whatever it inherited.
FILE *open_command(const char *command);

/// Reads and drops what the command still prints, then waits until its process
/// has ended; after this close_command does not wait. The reader's side.
void await_command_end(FILE *stream);

/// Closes the stream and gives the command's exit code; -1 when it ended in any other
/// way, or with what a -1 arrives as on this system. Waits for the process where
/// await_command_end did not.
int close_command(FILE *stream);

/// Lets the command go without waiting: it may run on and print on, and is
/// cleaned up after by collect_released_commands.
void release_command(FILE *stream);

/// Frees what released commands hold that have ended, and drops what the others
/// have printed since, so that none of them stops at a full pipe. Never waits.
void collect_released_commands();

} // namespace vimbo
