#include "tests/support/child_watch.hpp"

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

namespace rig
{

namespace
{

// What the tests ask of is this process; a handle of another one is none of theirs.
HANDLE opened(pid_t process)
{
    return OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE,
                       static_cast<DWORD>(process));
}

} // namespace

std::size_t open_descriptors(pid_t process)
{
    HANDLE handle = opened(process);
    DWORD count = 0;
    GetProcessHandleCount(handle, &count);
    CloseHandle(handle);
    return count;
}

std::size_t threads_of(pid_t process)
{
    HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof thread;
    std::size_t count = 0;
    for (BOOL more = Thread32First(list, &thread); more != FALSE;
         more = Thread32Next(list, &thread))
        count += thread.th32OwnerProcessID == static_cast<DWORD>(process) ? 1 : 0;
    CloseHandle(list);
    return count;
}

std::size_t children_of(pid_t process)
{
    HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W child = {};
    child.dwSize = sizeof child;
    std::size_t count = 0;
    for (BOOL more = Process32FirstW(list, &child); more != FALSE;
         more = Process32NextW(list, &child))
        count += child.th32ParentProcessID == static_cast<DWORD>(process) ? 1 : 0;
    CloseHandle(list);
    return count;
}

std::size_t zombies_of(pid_t /*process*/)
{
    return 0; // this system knows none
}

std::size_t resident_bytes(pid_t process)
{
    HANDLE handle = opened(process);
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(handle, &counters, sizeof counters);
    CloseHandle(handle);
    return counters.WorkingSetSize;
}

} // namespace rig
