#include "tests/support/stub_system.hpp"

#include "platform/program_start.hpp"

#include <cstdlib>
#include <filesystem>
#include <io.h>
#include <windows.h>

namespace stub
{

void start(int &argument_count, char **&arguments)
{
    vimbo::start_program(argument_count, arguments);
}

std::filesystem::path own_path()
{
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

void close_output()
{
    _close(1);
}

// Not by the copy that this may be, which would do its own actions again.
void leave_another(const std::string &file)
{
    std::wstring line = L"stub_tool await \"" + std::filesystem::path(file).wstring() + L'"';
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION started = {};
    if (CreateProcessW(std::filesystem::path(VIMBO_STUB_TOOL).c_str(), line.data(), nullptr,
                       nullptr, TRUE, 0, nullptr, nullptr, &start, &started) == FALSE)
        std::_Exit(1);
}

void die(int how)
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(how));
    std::abort();
}

} // namespace stub
