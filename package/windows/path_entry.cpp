// Adds a folder to the machine's PATH, or takes it out again, for the installer: its
// own texts are too short for what the PATH may hold.
//
//   path_entry add|remove FOLDER
#include "platform/program_start.hpp"
#include "platform/windows/wide_text.hpp"

#include <windows.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace
{

struct path_value {
    std::wstring text;
    DWORD type; // with names of variables in it, or without
};

// False when there is a value that cannot be read, which is not to be lost.
bool read_path(HKEY key, path_value &path)
{
    DWORD size = 0;
    const LSTATUS found = RegQueryValueExW(key, L"Path", nullptr, &path.type, nullptr, &size);
    if (found == ERROR_FILE_NOT_FOUND) {
        path = {{}, REG_EXPAND_SZ};
        return true;
    }
    if (found != ERROR_SUCCESS || (path.type != REG_SZ && path.type != REG_EXPAND_SZ))
        return false;
    path.text.resize(size / sizeof(wchar_t) + 1);
    size = static_cast<DWORD>(path.text.size() * sizeof(wchar_t));
    if (RegQueryValueExW(key, L"Path", nullptr, nullptr, reinterpret_cast<BYTE *>(path.text.data()),
                         &size) != ERROR_SUCCESS)
        return false;
    path.text.resize(path.text.find(L'\0'));
    return true;
}

bool write_path(HKEY key, const path_value &path)
{
    const auto size = static_cast<DWORD>((path.text.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key, L"Path", 0, path.type,
                          reinterpret_cast<const BYTE *>(path.text.c_str()), size) == ERROR_SUCCESS;
}

std::wstring without(std::wstring_view path, std::wstring_view folder)
{
    std::wstring kept;
    while (!path.empty()) {
        const std::size_t end = path.find(L';');
        const std::wstring_view entry = path.substr(0, end);
        path.remove_prefix(end == std::wstring_view::npos ? path.size() : end + 1);
        if (entry == folder)
            continue;
        if (!kept.empty())
            kept += L';';
        kept += entry;
    }
    return kept;
}

// Behind all others, so that a real tool chain comes first.
void change(path_value &path, std::wstring_view folder, bool add)
{
    path.text = without(path.text, folder);
    if (!add)
        return;
    if (!path.text.empty())
        path.text += L';';
    path.text += folder;
}

// Programs that are started from now on know it.
void tell_the_desktop()
{
    constexpr UINT patience = 1000; // milliseconds
    SendMessageTimeoutW(HWND_BROADCAST, WM_SETTINGCHANGE, 0,
                        reinterpret_cast<LPARAM>(L"Environment"), SMTO_ABORTIFHUNG, patience,
                        nullptr);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    vimbo::start_program(argument_count, arguments);
    wchar_t folder[vimbo::wide_path_capacity];
    const std::string_view action = argument_count == 3 ? arguments[1] : "";
    if ((action != "add" && action != "remove") || !vimbo::to_wide(arguments[2], folder)) {
        std::fputs("usage: path_entry add|remove FOLDER\n", stderr);
        return 2;
    }
    HKEY key = nullptr;
    path_value path = {};
    const bool changed =
        RegOpenKeyExW(HKEY_LOCAL_MACHINE,
                      L"System\\CurrentControlSet\\Control\\Session Manager\\Environment", 0,
                      KEY_QUERY_VALUE | KEY_SET_VALUE, &key) == ERROR_SUCCESS &&
        read_path(key, path) && (change(path, folder, action == "add"), write_path(key, path));
    if (key != nullptr)
        RegCloseKey(key);
    if (!changed) {
        std::fputs("path_entry: the PATH could not be changed\n", stderr);
        return 1;
    }
    tell_the_desktop();
    return 0;
}
