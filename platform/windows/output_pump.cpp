#include "platform/windows/output_pump.hpp"

#include <fcntl.h>
#include <io.h>

#include <cstdint>
#include <cwchar>
#include <iterator>

namespace vimbo
{

namespace
{

constexpr DWORD pipe_size = 65536;

// How long the last output of an ended process may take through a process that
// it left behind.
constexpr DWORD leftover_output_timeout_ms = 1000;

// True when the read has something to give, be it only the pipe's end; false when the
// process has ended and those that it left behind say nothing, or the pump is to stop.
bool await_output(const output_pump &pump)
{
    const HANDLE events[] = {pump.stop, pump.arrival, pump.process};
    DWORD first = WaitForMultipleObjects(3, events, FALSE, INFINITE);
    if (first == WAIT_OBJECT_0 + 2)
        first = WaitForMultipleObjects(2, events, FALSE, leftover_output_timeout_ms);
    return first == WAIT_OBJECT_0 + 1;
}

// The bytes that have arrived; 0 at the end of it all.
DWORD read_output(const output_pump &pump, char *buffer, DWORD size)
{
    OVERLAPPED reading = {};
    reading.hEvent = pump.arrival;
    DWORD count = 0;
    if (ReadFile(pump.tool_output, buffer, size, nullptr, &reading) == FALSE &&
        GetLastError() != ERROR_IO_PENDING)
        return 0;
    const bool wanted = await_output(pump);
    if (!wanted)
        CancelIoEx(pump.tool_output, &reading);
    const bool read = GetOverlappedResult(pump.tool_output, &reading, &count, TRUE) != FALSE;
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
void pass_on(const output_pump &pump, const char *bytes, DWORD count)
{
    while (count > 0) {
        DWORD passed = 0;
        if (WriteFile(pump.inlet, bytes, count, &passed, nullptr) == FALSE)
            return;
        bytes += passed;
        count -= passed;
    }
}

void close_handle(HANDLE &handle)
{
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE)
        CloseHandle(handle);
    handle = nullptr;
}

DWORD WINAPI run_pump(void *argument)
{
    auto &pump = *static_cast<output_pump *>(argument);
    char bytes[pipe_size];
    DWORD kept = 0; // a carriage return, at the beginning
    for (DWORD count = 0; (count = read_output(pump, bytes + kept, sizeof bytes - kept)) > 0;) {
        bool return_waits = false;
        pass_on(pump, bytes, join_line_ends(bytes, kept + count, return_waits));
        bytes[0] = '\r';
        kept = return_waits ? 1 : 0;
    }
    pass_on(pump, "\r", kept);
    // The tool's writing fails from now on, and the stream is at its end.
    close_handle(pump.tool_output);
    close_handle(pump.inlet);
    return 0;
}

// Its end here can be read with a limit of time, which those of CreatePipe cannot.
bool open_tool_pipe(output_pump &pump, HANDLE &tool_end)
{
    static unsigned int number;
    wchar_t name[64];
    std::swprintf(name, std::size(name), L"\\\\.\\pipe\\vimbo-%lu-%u", GetCurrentProcessId(),
                  ++number);
    pump.tool_output = CreateNamedPipeW(
        name, PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, pipe_size, pipe_size, 0,
        nullptr);
    if (pump.tool_output == INVALID_HANDLE_VALUE)
        return false;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE end = CreateFileW(name, GENERIC_WRITE, 0, &inherited, OPEN_EXISTING, 0, nullptr);
    if (end == INVALID_HANDLE_VALUE)
        return false;
    tool_end = end;
    return true;
}

FILE *open_stream(output_pump &pump)
{
    HANDLE outlet = nullptr;
    if (CreatePipe(&outlet, &pump.inlet, nullptr, pipe_size) == FALSE)
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

} // namespace

FILE *open_pump(output_pump &pump, HANDLE &tool_end)
{
    pump.stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    pump.arrival = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (pump.stop == nullptr || pump.arrival == nullptr || !open_tool_pipe(pump, tool_end))
        return nullptr;
    return open_stream(pump);
}

bool start_pump(output_pump &pump, HANDLE process)
{
    pump.process = process;
    pump.thread = CreateThread(nullptr, 0, run_pump, &pump, 0, nullptr);
    return pump.thread != nullptr;
}

void stop_pump(const output_pump &pump)
{
    SetEvent(pump.stop);
}

bool await_pump(const output_pump &pump, DWORD milliseconds)
{
    return WaitForSingleObject(pump.thread, milliseconds) == WAIT_OBJECT_0;
}

void close_pump(output_pump &pump)
{
    for (HANDLE *handle : {&pump.thread, &pump.stop, &pump.tool_output, &pump.arrival, &pump.inlet})
        close_handle(*handle);
}

} // namespace vimbo
