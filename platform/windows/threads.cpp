#include "platform/threads.hpp"

#include <pthread.h>
#include <windows.h>

namespace vimbo
{

static_assert(sizeof(pthread_t) <= sizeof(std::uintptr_t));

bool start_thread(reader_thread &thread, reader_function entry, void *argument)
{
    pthread_t handle = {};
    if (pthread_create(&handle, nullptr, entry, argument) != 0)
        return false;
    thread.handle = handle;
    return true;
}

bool try_join(reader_thread thread, void *&result)
{
    // The library lets a thread be joined, and hands its record to the next one that is
    // started, while the thread is still at work on that record. The two would then
    // share it, and the next one count as ended before it has begun.
    return WaitForSingleObject(pthread_gethandle(thread.handle), 0) == WAIT_OBJECT_0 &&
           _pthread_tryjoin(thread.handle, &result) == 0;
}

} // namespace vimbo
