// _popen and _pclose of our own: theirs show a console, cannot let a process go
// without waiting for it, and their streams stay open as long as anybody holds the
// pipe.
#include "platform/commands.hpp"

#include "platform/windows/interpreter.hpp"
#include "platform/windows/output_pump.hpp"

#include <windows.h>

#include <atomic>
#include <cstdlib>

namespace vimbo
{

namespace
{

//   free --open_command--> open --close_command----> free
//                          open --release_command--> released --its process ends--> free
// The main thread alone moves a slot and looks at its state.
enum class command_state { free, open, released };

struct command_slot {
    command_state state;
    HANDLE process;
    output_pump pump;
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

void free_slot(command_slot &slot)
{
    close_pump(slot.pump);
    if (slot.process != nullptr)
        CloseHandle(slot.process);
    slot.process = nullptr;
    slot.stream = nullptr;
    slot.state = command_state::free;
}

// A program's end closes its streams, and would wait for a reader that waits for its
// tool.
void end_all_streams()
{
    for (const command_slot &slot : commands)
        if (slot.state != command_state::free)
            stop_pump(slot.pump);
}

// Fills all of the slot but its state; the stream, or null.
FILE *set_up_command(command_slot &slot, const char *command)
{
    [[maybe_unused]] static const int registered = std::atexit(end_all_streams);
    HANDLE tool_end = nullptr;
    FILE *stream = open_pump(slot.pump, tool_end);
    const bool started = stream != nullptr && start_command(command, tool_end, slot.process);
    // With an end here, the tool's output would have none.
    if (tool_end != nullptr)
        CloseHandle(tool_end);
    if (started && start_pump(slot.pump, slot.process))
        return stream;
    if (stream != nullptr)
        std::fclose(stream);
    return nullptr;
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
    char dropped[65536];
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
    slot->stream = nullptr;
    slot->state = command_state::released;
    stop_pump(slot->pump);
    // It ends as soon as it gets its turn. Where that takes longer, it is collected
    // later: no frame waits for a thread without a limit.
    constexpr DWORD turn_ms = 1000;
    await_pump(slot->pump, turn_ms);
    collect_released_commands();
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
        if (slot.state != command_state::released ||
            WaitForSingleObject(slot.process, 0) != WAIT_OBJECT_0)
            continue;
        stop_pump(slot.pump);
        if (await_pump(slot.pump, 0))
            free_slot(slot);
    }
}

} // namespace vimbo
