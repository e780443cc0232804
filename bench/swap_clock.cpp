// Preloaded into the program, notes when its frames were shown and what it did
// between them. Each line: the time in seconds, then "wait" (the program had
// nothing to do), "poll" (it was drawing slices, or input was left), "swap", or
// "join" (it has taken a reader thread's result).
#include <dlfcn.h>
#include <pthread.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace
{

void note(const char *what)
{
    static FILE *log = std::fopen(std::getenv("SWAP_CLOCK_LOG"), "w");
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    if (log != nullptr) {
        std::fprintf(log, "%.6f %s\n", now.count(), what);
        std::fflush(log);
    }
}

template <typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int pthread_tryjoin_np(pthread_t thread, void **result) noexcept
{
    const int error = next<int (*)(pthread_t, void **)>("pthread_tryjoin_np")(thread, result);
    if (error == 0)
        note("join");
    return error;
}

void glfwWaitEventsTimeout(double timeout)
{
    next<void (*)(double)>("glfwWaitEventsTimeout")(timeout);
    note("wait");
}

void glfwPollEvents()
{
    next<void (*)()>("glfwPollEvents")();
    note("poll");
}

void glfwSwapBuffers(void *window)
{
    next<void (*)(void *)>("glfwSwapBuffers")(window);
    note("swap");
}
}
