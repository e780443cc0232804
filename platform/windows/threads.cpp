#include "platform/threads.hpp"

#include <pthread.h>

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
    return _pthread_tryjoin(thread.handle, &result) == 0;
}

} // namespace vimbo
