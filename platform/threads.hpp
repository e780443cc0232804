// A thread that the main thread never waits for: it is started, and asked once
// a frame whether it has ended. Main thread only.
#pragma once

#include <cstdint>

namespace vimbo
{

/// A started thread; its content belongs to the platform.
struct reader_thread {
    std::uintptr_t handle;
};

/// A thread's function: its result is what try_join hands out.
using reader_function = void *(*)(void *argument);

/// Starts `entry(argument)` on a new thread. False when the system refuses.
bool start_thread(reader_thread &thread, reader_function entry, void *argument);

/// True once the thread has ended, together with its result; its handle is
/// then released. False, at once, while it still runs.
bool try_join(reader_thread thread, void *&result);

} // namespace vimbo
