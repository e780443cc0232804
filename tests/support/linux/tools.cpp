#include "tests/support/tools.hpp"

#include <cstdlib>

namespace rig
{

std::string stub(const std::string &actions)
{
    return "exec " VIMBO_STUB_TOOL " " + actions;
}

int status_of_killed(int /*how*/)
{
    return -1;
}

std::string missing_tool()
{
    return "no-such-tool-anywhere 2>/dev/null";
}

void set_variable(const char *name, const std::string &value)
{
    setenv(name, value.c_str(), 1);
}

std::string handed_text_path()
{
    return "/tmp//vimbo";
}

} // namespace rig
