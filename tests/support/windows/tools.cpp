#include "tests/support/tools.hpp"

#include <cstdlib>
#include <filesystem>
#include <windows.h>

namespace rig
{

// The interpreter knows double quotes only.
std::string stub(const std::string &actions)
{
    std::string command =
        '"' + std::filesystem::path(VIMBO_STUB_TOOL).make_preferred().string() + "\" " + actions;
    for (char &character : command)
        if (character == '\'')
            character = '"';
    return command;
}

int status_of_killed(int how)
{
    return how;
}

std::string missing_tool()
{
    return "no-such-tool-anywhere 2>nul";
}

void set_variable(const char *name, const std::string &value)
{
    // For what looks it up in the C library, and for what asks the system.
    _putenv_s(name, value.c_str());
    SetEnvironmentVariableW(std::filesystem::path(name).c_str(),
                            std::filesystem::path(value).c_str());
}

std::string handed_text_path()
{
    // Test names have no characters beyond those of every code page.
    char directory[MAX_PATH + 1];
    GetTempPathA(sizeof directory, directory);
    return std::string(directory) + "/vimbo";
}

} // namespace rig
