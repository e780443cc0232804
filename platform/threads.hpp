// A thread that the main thread never waits for: it is started, and asked once
// a frame whether it has ended. Main thread only.
#pragma once

#include <cstdint>

namespace vimbo
{

/// A started thread; the handle is the system's own, of no meaning elsewhere.
struct reader_thread {
    std::uintptr_t handle;
};

/// A thread's function: its result is what try_join hands out.
using reader_function = void *(*)(void *argument);

/// Starts `entry(argument)` on a new thread, which ends with the process if nobody
/// joins it. False, and `thread` as it was, when the system refuses.
bool start_thread(reader_thread &thread, reader_function entry, void *argument);

/// True once the thread has ended, together with its result; all that it wrote can
/// then be read, and its handle is released: it must not be asked for again. False,
/// at once and with `result` as it was, while it still runs.
bool try_join(reader_thread thread, void *&result);

} // namespace vimbo
