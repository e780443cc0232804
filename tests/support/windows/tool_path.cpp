#include "tests/support/tool_path.hpp"

#include "tests/support/tools.hpp"

#include <cstdlib>

namespace rig
{

// A tool is a copy of the stub, which finds its actions in a file beside itself.

tool_path::tool_path()
{
    const char *path = std::getenv("PATH");
    previous = path != nullptr ? path : "";
    set_variable("PATH", folder() + ';' + previous);
}

tool_path::~tool_path()
{
    set_variable("PATH", previous);
}

void tool_path::put(std::string_view name, std::string_view actions) const
{
    const std::string tool = place.file(std::string(name) + ".exe");
    write_file(place.file(std::string(name) + ".actions"), actions);
    if (!std::filesystem::exists(tool))
        std::filesystem::copy_file(VIMBO_STUB_TOOL, tool);
}

void tool_path::take_away(std::string_view name) const
{
    std::filesystem::remove(place.file(std::string(name) + ".exe"));
}

std::string tool_path::arguments_of(std::string_view name) const
{
    return read_file(place.file(std::string(name) + ".arguments"));
}

} // namespace rig
