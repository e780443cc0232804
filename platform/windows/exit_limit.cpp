#include "platform/exit_limit.hpp"

#include <windows.h>

#include <cstdlib>

namespace vimbo
{

namespace
{

DWORD WINAPI end_process(void * /*unused*/)
{
    constexpr DWORD milliseconds = 1000;
    Sleep(milliseconds);
    // ExitProcess would wait for the one that holds the process up.
    TerminateProcess(GetCurrentProcess(), EXIT_SUCCESS);
    return 0;
}

} // namespace

void limit_exit_time()
{
    HANDLE thread = CreateThread(nullptr, 0, end_process, nullptr, 0, nullptr);
    if (thread != nullptr)
        CloseHandle(thread);
}

} // namespace vimbo
