#include "platform/program_start.hpp"

#include "platform/windows/wide_text.hpp"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <cstring>

namespace vimbo
{

namespace
{

// Of a command line: 32767 UTF-16 units, of which a separate argument takes two, and
// a unit up to three bytes.
constexpr std::size_t argument_capacity = 32768 / 2 + 1;
constexpr std::size_t text_capacity = std::size_t{32768} * 3;

void take_arguments(int &count, char **&arguments)
{
    static char texts[text_capacity];
    static char *pointers[argument_capacity + 1];
    int found = 0;
    wchar_t **wide = CommandLineToArgvW(GetCommandLineW(), &found);
    if (wide == nullptr)
        return;
    std::size_t used = 0;
    count = 0;
    for (int i = 0; i < found && to_utf_8(wide[i], std::span(texts).subspan(used)); ++i) {
        pointers[count++] = texts + used;
        used += std::strlen(texts + used) + 1;
    }
    pointers[count] = nullptr;
    arguments = pointers;
    LocalFree(wide);
}

bool goes_somewhere(DWORD which)
{
    HANDLE handle = GetStdHandle(which);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

// The prompt is back as soon as the window's program has started, so that the keys
// pressed there are for others.
BOOL WINAPI ignore_interruption(DWORD event)
{
    return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? TRUE : FALSE;
}

void print_where_it_was_started()
{
    const bool output = goes_somewhere(STD_OUTPUT_HANDLE);
    const bool errors = goes_somewhere(STD_ERROR_HANDLE);
    if ((output && errors) || AttachConsole(ATTACH_PARENT_PROCESS) == FALSE)
        return;
    SetConsoleCtrlHandler(ignore_interruption, TRUE);
    if (!output)
        (void)!std::freopen("CONOUT$", "w", stdout);
    if (!errors)
        (void)!std::freopen("CONOUT$", "w", stderr);
    // The C library gathers what goes to a console through this name.
    std::setvbuf(stderr, nullptr, _IONBF, 0);
}

} // namespace

void start_program(int &argument_count, char **&arguments)
{
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    take_arguments(argument_count, arguments);
    print_where_it_was_started();
    for (FILE *stream : {stdout, stderr})
        if (_fileno(stream) >= 0)
            _setmode(_fileno(stream), _O_BINARY);
}

} // namespace vimbo
