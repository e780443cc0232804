// popen and pclose of our own: theirs cannot let a process go without waiting
// for it, and their streams stay open as long as anybody holds the pipe.
#include "platform/commands.hpp"

#include "platform/linux/shell_quotes.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdio_ext.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

// This header does not say of itself that it is C.
extern "C" {
#include <sys/pidfd.h>
}

extern char **environ; // NOLINT(readability-redundant-declaration)

namespace vimbo
{

namespace
{

//   free --open_command--> open --close_command----> free
//                          open --release_command--> released --its process ends--> free
// The main thread alone moves a slot and looks at its state. While the slot is open,
// its reader finds it by the stream, and looks at the rest, which then stays as it is.
enum class command_state { free, open, released };

struct command_slot {
    command_state state;
    pid_t process;
    int output;      // read end of the pipe
    int process_end; // readable once the process has ended; -1 where the system has none
    // Atomic, for a reader looks its own slot up while the main thread may be
    // filling another; all else in a slot is written before its reader starts.
    std::atomic<FILE *> stream;
};

command_slot commands[max_commands];

command_slot *find_free_slot()
{
    for (command_slot &slot : commands)
        if (slot.state == command_state::free)
            return &slot;
    return nullptr;
}

command_slot *find_slot(const FILE *stream)
{
    for (command_slot &slot : commands)
        if (slot.stream == stream)
            return &slot;
    return nullptr;
}

// How long the last output of an ended process may take through a process that
// it left behind, such as the `tee` of a wrapper script.
constexpr int leftover_output_timeout_ms = 1000;

// True when the pipe has something to give, be it only its end; false when the
// process has ended and those that it left behind say nothing.
bool await_output(const command_slot &slot)
{
    pollfd watched[2] = {{slot.output, POLLIN, 0}, {slot.process_end, POLLIN, 0}};
    while (poll(watched, 2, -1) < 0 && errno == EINTR) {
    }
    return watched[0].revents != 0 || poll(watched, 1, leftover_output_timeout_ms) > 0;
}

ssize_t read_output(void *cookie, char *buffer, std::size_t size)
{
    const auto &slot = *static_cast<const command_slot *>(cookie);
    if (!await_output(slot))
        return 0;
    ssize_t count = 0;
    do
        count = read(slot.output, buffer, size);
    while (count < 0 && errno == EINTR);
    return count;
}

bool spawn_shell(const char *command, int output, pid_t &process)
{
    constexpr std::size_t capacity = 16384;
    char line[capacity];
    if (!format_shell_line(command, line))
        return false;

    char shell[] = "sh";
    char option[] = "-c";
    char *arguments[] = {shell, option, line, nullptr};
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0)
        return false;
    const bool started =
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO) == 0 &&
        posix_spawn(&process, "/bin/sh", &actions, nullptr, arguments, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    return started;
}

// Status of the ended process, as this program words it.
int decode_status(int status)
{
    constexpr int lowest_byte_of_minus_one = 255; // all that a process can hand over
    if (!WIFEXITED(status) || WEXITSTATUS(status) == lowest_byte_of_minus_one)
        return -1;
    return WEXITSTATUS(status);
}

void free_slot(command_slot &slot)
{
    close(slot.output);
    if (slot.process_end >= 0)
        close(slot.process_end);
    slot.stream = nullptr;
    slot.state = command_state::free;
}

FILE *open_stream(command_slot &slot)
{
    const cookie_io_functions_t functions = {read_output, nullptr, nullptr, nullptr};
    FILE *stream = fopencookie(&slot, "r", functions);
    // One thread at a time has the stream. With the library's own locks the
    // end of the program could wait for a reader that waits for its tool.
    if (stream != nullptr)
        __fsetlocking(stream, FSETLOCKING_BYCALLER);
    return stream;
}

int wait_for(pid_t process)
{
    int status = 0;
    pid_t ended = 0;
    do
        ended = waitpid(process, &status, 0);
    while (ended < 0 && errno == EINTR);
    return ended == process ? decode_status(status) : -1;
}

void drop_waiting_output(const command_slot &slot)
{
    char dropped[65536]; // a pipe's usual capacity: one call empties it
    pollfd watched = {slot.output, POLLIN, 0};
    if (poll(&watched, 1, 0) > 0)
        (void)!read(slot.output, dropped, sizeof dropped);
}

} // namespace

FILE *open_command(const char *command)
{
    // Where the one who started this program has it ignored, children leave no status.
    std::signal(SIGCHLD, SIG_DFL);
    collect_released_commands();
    command_slot *slot = find_free_slot();
    int ends[2] = {};
    if (slot == nullptr || pipe2(ends, O_CLOEXEC) != 0)
        return nullptr;

    slot->output = ends[0];
    slot->process_end = -1;
    FILE *stream = open_stream(*slot);
    const bool started = stream != nullptr && spawn_shell(command, ends[1], slot->process);
    close(ends[1]);
    if (!started) {
        if (stream != nullptr)
            std::fclose(stream);
        free_slot(*slot);
        return nullptr;
    }
    slot->process_end = pidfd_open(slot->process, 0);
    slot->state = command_state::open;
    slot->stream = stream;
    return stream;
}

void await_command_end(FILE *stream)
{
    char dropped[65536];
    while (std::fread(dropped, 1, sizeof dropped, stream) > 0) {
    }
    const command_slot *slot = find_slot(stream);
    if (slot == nullptr)
        return;
    // WNOWAIT leaves the status for close_command to take.
    siginfo_t ended = {};
    while (waitid(P_PID, static_cast<id_t>(slot->process), &ended, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
}

int close_command(FILE *stream)
{
    command_slot *slot = find_slot(stream);
    if (slot == nullptr)
        return -1;
    std::fclose(stream);
    const pid_t process = slot->process;
    free_slot(*slot);
    return wait_for(process);
}

void release_command(FILE *stream)
{
    command_slot *slot = find_slot(stream);
    if (slot == nullptr)
        return;
    std::fclose(stream);
    slot->stream = nullptr;
    slot->state = command_state::released;
    collect_released_commands();
}

void collect_released_commands()
{
    for (command_slot &slot : commands) {
        if (slot.state != command_state::released)
            continue;
        drop_waiting_output(slot);
        if (waitpid(slot.process, nullptr, WNOHANG) != 0)
            free_slot(slot);
    }
}

} // namespace vimbo
