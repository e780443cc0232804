#include "platform/windows/interpreter.hpp"

#include "platform/windows/wide_text.hpp"

#include <windows.h>

#include <cwchar>
#include <iterator>
#include <span>

namespace vimbo
{

namespace
{

// A copy of this program's own for the tool; where there is none, nothing.
HANDLE standard_handle(DWORD which)
{
    HANDLE own = GetStdHandle(which);
    HANDLE copy = nullptr;
    if (own != nullptr && own != INVALID_HANDLE_VALUE &&
        DuplicateHandle(GetCurrentProcess(), own, GetCurrentProcess(), &copy, 0, TRUE,
                        DUPLICATE_SAME_ACCESS) != FALSE)
        return copy;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inherited, OPEN_EXISTING, 0, nullptr);
}

// Only the PATH is to lead to tools, not the folder that happens to be current.
constexpr wchar_t path_only_variable[] = L"NoDefaultCurrentDirectoryInExePath";

// The interpreter replaces %NAME%, in quotes or not, and knows no way to write a per
// cent sign as it is. It comes out of a variable instead, as !NAME! is replaced after
// all else and not looked at again; and so must the two others come then that mean
// something there.
struct hidden_character {
    wchar_t character;
    const wchar_t *variable;
    const wchar_t *reference;
};
constexpr hidden_character hidden_characters[] = {
    {L'%', L"VIMBO_PERCENT", L"!VIMBO_PERCENT!"},
    {L'!', L"VIMBO_EXCLAMATION", L"!VIMBO_EXCLAMATION!"},
    {L'^', L"VIMBO_CARET", L"!VIMBO_CARET!"},
};

const hidden_character *find_hidden(wchar_t character)
{
    for (const hidden_character &hidden : hidden_characters)
        if (hidden.character == character)
            return &hidden;
    return nullptr;
}

constexpr std::size_t line_capacity = 8191; // the interpreter takes no longer one

// Puts a text at the line's end. False when the line gets too long.
bool add_to_line(wchar_t *line, std::size_t &length, const wchar_t *text, std::size_t count)
{
    if (length + count >= line_capacity)
        return false;
    std::wmemcpy(line + length, text, count);
    length += count;
    line[length] = L'\0';
    return true;
}

bool add_to_line(wchar_t *line, std::size_t &length, const wchar_t *text)
{
    return add_to_line(line, length, text, std::wcslen(text));
}

// The interpreter's own command line; it takes the outer quotes off, whatever stands
// between them.
bool form_line(const wchar_t *command, std::span<wchar_t, line_capacity> line)
{
    std::size_t length = 0;
    const bool hides = std::wcschr(command, L'%') != nullptr;
    bool fits = add_to_line(line.data(), length,
                            hides ? L"cmd.exe /d /v:on /s /c \"" : L"cmd.exe /d /v:off /s /c \"");
    for (const wchar_t *at = command; fits && *at != L'\0'; ++at) {
        const hidden_character *hidden = hides ? find_hidden(*at) : nullptr;
        fits = hidden != nullptr ? add_to_line(line.data(), length, hidden->reference)
                                 : add_to_line(line.data(), length, at, 1);
    }
    return fits && add_to_line(line.data(), length, L"\"");
}

// For the tool alone; all calls are the main thread's.
void set_variables_for_tool(bool present)
{
    SetEnvironmentVariableW(path_only_variable, present ? L"1" : nullptr);
    for (const hidden_character &hidden : hidden_characters) {
        const wchar_t value[] = {hidden.character, L'\0'};
        SetEnvironmentVariableW(hidden.variable, present ? value : nullptr);
    }
}

bool start_interpreter(wchar_t *line, STARTUPINFOEXW &start, HANDLE &process)
{
    wchar_t interpreter[MAX_PATH];
    const UINT length = GetSystemDirectoryW(interpreter, MAX_PATH);
    constexpr wchar_t name[] = L"\\cmd.exe";
    if (length == 0 || length + std::size(name) > MAX_PATH)
        return false;
    std::wcscpy(interpreter + length, name);
    // Without a console of ours to share, it would open one.
    const DWORD console = GetConsoleWindow() != nullptr ? 0 : CREATE_NO_WINDOW;
    PROCESS_INFORMATION started = {};
    set_variables_for_tool(true);
    const BOOL done = CreateProcessW(interpreter, line, nullptr, nullptr, TRUE,
                                     console | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr,
                                     &start.StartupInfo, &started);
    set_variables_for_tool(false);
    if (done == FALSE)
        return false;
    CloseHandle(started.hThread);
    process = started.hProcess;
    return true;
}

// Hands over these three handles and no other.
bool start_with_handles(wchar_t *line, HANDLE (&handles)[3], HANDLE &process)
{
    constexpr std::size_t list_capacity = 256;
    alignas(void *) char memory[list_capacity];
    std::size_t size = sizeof memory;
    STARTUPINFOEXW start = {};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = handles[0];
    start.StartupInfo.hStdOutput = handles[1];
    start.StartupInfo.hStdError = handles[2];
    start.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory);
    if (InitializeProcThreadAttributeList(start.lpAttributeList, 1, 0, &size) == FALSE)
        return false;
    const bool started =
        UpdateProcThreadAttribute(start.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                  handles, sizeof handles, nullptr, nullptr) != FALSE &&
        start_interpreter(line, start, process);
    DeleteProcThreadAttributeList(start.lpAttributeList);
    return started;
}

} // namespace

bool start_command(const char *command, void *output, void *&process)
{
    wchar_t wide[line_capacity];
    wchar_t line[line_capacity];
    if (!to_wide(command, wide) || !form_line(wide, line))
        return false;
    HANDLE handles[3] = {standard_handle(STD_INPUT_HANDLE), output,
                         standard_handle(STD_ERROR_HANDLE)};
    const bool started = start_with_handles(line, handles, process);
    CloseHandle(handles[0]);
    CloseHandle(handles[2]);
    return started;
}

} // namespace vimbo
