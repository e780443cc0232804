#include "platform/exit_limit.hpp"

#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace vimbo
{

void limit_exit_time()
{
    constexpr unsigned int seconds = 1;
    std::signal(SIGALRM, [](int /*signal*/) { _exit(EXIT_SUCCESS); });
    // Whoever started the program may have blocked it.
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
    alarm(seconds);
}

} // namespace vimbo
