// _popen and _pclose of our own: theirs show a console, cannot let a process go
// without waiting for it, and their streams stay open as long as anybody holds the
// pipe. A thread for each command, its pump, passes on what the tool's pipe brings, so
// that the stream ends when this program wants it to.
#include "platform/commands.hpp"

#include "platform/windows/interpreter.hpp"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <iterator>

namespace vimbo
{

namespace
{

enum class command_state { free, open, released };

struct command_slot {
    command_state state;
    HANDLE process;
    HANDLE pump;        // the thread
    HANDLE stop;        // an event: the pump is to end
    HANDLE tool_output; // the pump reads it,
    HANDLE arrival;     // with this event,
    HANDLE inlet;       // and writes to the stream's pipe
    // Atomic, for a reader looks its own slot up while the main thread may be
    // filling another; all else in a slot is written before its reader starts.
    std::atomic<FILE *> stream;
};

command_slot commands[max_commands];

constexpr DWORD pipe_size = 65536;

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

void close_handle(HANDLE &handle)
{
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE)
        CloseHandle(handle);
    handle = nullptr;
}

void free_slot(command_slot &slot)
{
    for (HANDLE *handle :
         {&slot.process, &slot.pump, &slot.stop, &slot.tool_output, &slot.arrival, &slot.inlet})
        close_handle(*handle);
    slot.stream = nullptr;
    slot.state = command_state::free;
}

bool has_ended(HANDLE process_or_thread)
{
    return WaitForSingleObject(process_or_thread, 0) == WAIT_OBJECT_0;
}

// How long the last output of an ended process may take through a process that
// it left behind.
constexpr DWORD leftover_output_timeout_ms = 1000;

// True when the read has something to give, be it only the pipe's end; false when the
// process has ended and those that it left behind say nothing, or the pump is to stop.
bool await_output(const command_slot &slot)
{
    const HANDLE events[] = {slot.stop, slot.arrival, slot.process};
    DWORD first = WaitForMultipleObjects(3, events, FALSE, INFINITE);
    if (first == WAIT_OBJECT_0 + 2)
        first = WaitForMultipleObjects(2, events, FALSE, leftover_output_timeout_ms);
    return first == WAIT_OBJECT_0 + 1;
}

// The bytes that have arrived; 0 at the end of it all.
DWORD read_output(const command_slot &slot, char *buffer, DWORD size)
{
    OVERLAPPED reading = {};
    reading.hEvent = slot.arrival;
    DWORD count = 0;
    if (ReadFile(slot.tool_output, buffer, size, nullptr, &reading) == FALSE &&
        GetLastError() != ERROR_IO_PENDING)
        return 0;
    const bool wanted = await_output(slot);
    if (!wanted)
        CancelIoEx(slot.tool_output, &reading);
    const bool read = GetOverlappedResult(slot.tool_output, &reading, &count, TRUE) != FALSE;
    return wanted && read ? count : 0;
}

// Takes the carriage return out of line ends, as a text stream does. One at the end of
// a piece waits for what follows it.
DWORD join_line_ends(char *bytes, DWORD count, bool &return_waits)
{
    DWORD out = 0;
    return_waits = false;
    for (DWORD in = 0; in < count; ++in) {
        if (bytes[in] == '\r' && in + 1 == count)
            return_waits = true;
        else if (bytes[in] != '\r' || bytes[in + 1] != '\n')
            bytes[out++] = bytes[in];
    }
    return out;
}

// Where nobody takes it any more, it is dropped.
void pass_on(const command_slot &slot, const char *bytes, DWORD count)
{
    while (count > 0) {
        DWORD passed = 0;
        if (WriteFile(slot.inlet, bytes, count, &passed, nullptr) == FALSE)
            return;
        bytes += passed;
        count -= passed;
    }
}

DWORD WINAPI run_pump(void *argument)
{
    auto &slot = *static_cast<command_slot *>(argument);
    char bytes[pipe_size];
    DWORD kept = 0; // a carriage return, at the beginning
    for (DWORD count = 0; (count = read_output(slot, bytes + kept, sizeof bytes - kept)) > 0;) {
        bool return_waits = false;
        pass_on(slot, bytes, join_line_ends(bytes, kept + count, return_waits));
        bytes[0] = '\r';
        kept = return_waits ? 1 : 0;
    }
    pass_on(slot, "\r", kept);
    // The tool's writing fails from now on, and the stream is at its end.
    close_handle(slot.tool_output);
    close_handle(slot.inlet);
    return 0;
}

// A program's end closes its streams, and would wait for a reader that waits for its
// tool.
void end_all_streams()
{
    for (const command_slot &slot : commands)
        if (slot.state != command_state::free)
            SetEvent(slot.stop);
}

// The pipe from the tool: its end here can be read with a limit of time, which those
// of CreatePipe cannot.
bool open_tool_pipe(command_slot &slot, HANDLE &tool_end)
{
    static unsigned int number;
    wchar_t name[64];
    std::swprintf(name, std::size(name), L"\\\\.\\pipe\\vimbo-%lu-%u", GetCurrentProcessId(),
                  ++number);
    slot.tool_output = CreateNamedPipeW(
        name, PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, pipe_size, pipe_size, 0,
        nullptr);
    if (slot.tool_output == INVALID_HANDLE_VALUE)
        return false;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    tool_end = CreateFileW(name, GENERIC_WRITE, 0, &inherited, OPEN_EXISTING, 0, nullptr);
    return tool_end != INVALID_HANDLE_VALUE;
}

FILE *open_stream(command_slot &slot)
{
    HANDLE outlet = nullptr;
    if (CreatePipe(&outlet, &slot.inlet, nullptr, pipe_size) == FALSE)
        return nullptr;
    const int descriptor =
        _open_osfhandle(reinterpret_cast<std::intptr_t>(outlet), _O_RDONLY | _O_BINARY);
    if (descriptor < 0) {
        CloseHandle(outlet);
        return nullptr;
    }
    FILE *stream = _fdopen(descriptor, "rb");
    if (stream == nullptr)
        _close(descriptor);
    return stream;
}

bool start_pump(command_slot &slot)
{
    [[maybe_unused]] static const int registered = std::atexit(end_all_streams);
    slot.pump = CreateThread(nullptr, 0, run_pump, &slot, 0, nullptr);
    return slot.pump != nullptr;
}

// Fills all of the slot but its state; the stream, or null.
FILE *set_up_command(command_slot &slot, const char *command)
{
    HANDLE tool_end = nullptr;
    slot.stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    slot.arrival = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    FILE *stream = nullptr;
    bool started = slot.stop != nullptr && slot.arrival != nullptr &&
                   open_tool_pipe(slot, tool_end) && (stream = open_stream(slot)) != nullptr &&
                   start_command(command, tool_end, slot.process);
    close_handle(tool_end);
    started = started && start_pump(slot);
    if (!started && stream != nullptr) {
        std::fclose(stream);
        stream = nullptr;
    }
    return stream;
}

} // namespace

FILE *open_command(const char *command)
{
    collect_released_commands();
    command_slot *slot = find_free_slot();
    if (slot == nullptr)
        return nullptr;
    FILE *stream = set_up_command(*slot, command);
    if (stream == nullptr) {
        free_slot(*slot);
        return nullptr;
    }
    slot->state = command_state::open;
    slot->stream = stream;
    return stream;
}

void await_command_end(FILE *stream)
{
    char dropped[pipe_size];
    while (std::fread(dropped, 1, sizeof dropped, stream) > 0) {
    }
    const command_slot *slot = find_slot(stream);
    if (slot != nullptr)
        WaitForSingleObject(slot->process, INFINITE);
}

int close_command(FILE *stream)
{
    command_slot *slot = find_slot(stream);
    if (slot == nullptr)
        return -1;
    std::fclose(stream);
    WaitForSingleObject(slot->process, INFINITE);
    DWORD code = 0;
    const bool told = GetExitCodeProcess(slot->process, &code) != FALSE;
    SetEvent(slot->stop);
    WaitForSingleObject(slot->pump, INFINITE);
    free_slot(*slot);
    return told ? static_cast<int>(code) : -1;
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
    // What they print meanwhile their pumps drop.
    for (command_slot &slot : commands) {
        if (slot.state != command_state::released || !has_ended(slot.process))
            continue;
        SetEvent(slot.stop);
        if (has_ended(slot.pump))
            free_slot(slot);
    }
}

} // namespace vimbo
