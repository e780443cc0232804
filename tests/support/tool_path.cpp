#include "tests/support/tool_path.hpp"

#include "tests/support/tools.hpp"

#include <cstdlib>

namespace rig
{

tool_path::tool_path()
{
    const char *path = std::getenv("PATH");
    previous = path != nullptr ? path : "";
    setenv("PATH", (folder() + ':' + previous).c_str(), 1);
}

tool_path::~tool_path()
{
    setenv("PATH", previous.c_str(), 1);
}

void tool_path::put(std::string_view name, std::string_view actions) const
{
    const std::string noted = place.file(std::string(name) + ".arguments");
    // Renamed into place, so that nobody reads half a list.
    write_script(place.file(name), "printf '%s\\n' \"$@\" >" + noted + ".new\nmv " + noted +
                                       ".new " + noted + '\n' + stub(std::string(actions)) + '\n');
}

std::string tool_path::arguments_of(std::string_view name) const
{
    return read_file(place.file(std::string(name) + ".arguments"));
}

} // namespace rig
