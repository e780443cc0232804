// One external tool behind a read pipe, with the thread that reads it. The
// frame never waits for either: it asks once a frame whether the reader ended.
#pragma once

#include "platform/commands.hpp"
#include "platform/threads.hpp"

#include <cstdint>
#include <cstdio>

namespace vimbo
{

/// Idle while `pipe` is null and its running bit is clear; running while both are
/// set. A pipe without the bit is a tool that no thread could be had for: what
/// becomes of it is its job's to say. Main thread only; the reader has its stream and
/// its own results, nothing of this.
struct command_job {
    /// The tool's output; set as long as its status has not been taken.
    FILE *pipe;
    reader_thread thread;
};

/// True when `tray_directory` can stand between double quotes, as commands have it.
/// One with a double quote cannot: it would end there, and the rest would be the
/// shell's. One line on standard error then says so.
bool can_be_quoted(const char *tray_directory);

/// True when the job may be started.
bool is_idle(const command_job &job, std::uint32_t ui_flags, std::uint32_t running_bit);

/// Starts the reader on `pipe`, null or not, and sets the running bit. False
/// when no thread could be had; pipe and bit are then as they were.
bool start_job_reader(command_job &job, reader_function reader, std::uint32_t &ui_flags,
                      std::uint32_t running_bit);

/// True once the reader has ended, together with its result. To be asked only
/// while the running bit is set, and not again after that.
bool poll_job(const command_job &job, void *&result);

} // namespace vimbo
