#include "tests/support/tool_path.hpp"

#include "tests/support/tools.hpp"

#include <cstdlib>

namespace rig
{

tool_path::tool_path()
{
    const char *path = std::getenv("PATH");
    previous = path != nullptr ? path : "";
    set_variable("PATH", folder() + ':' + previous);
}

tool_path::~tool_path()
{
    set_variable("PATH", previous);
}

void tool_path::put(std::string_view name, std::string_view actions) const
{
    const std::string noted = place.file(std::string(name) + ".arguments");
    // Renamed into place, so that nobody reads half a list.
    write_script(place.file(name), "printf '%s\\n' \"$@\" >" + noted + ".new\nmv " + noted +
                                       ".new " + noted + '\n' + stub(std::string(actions)) + '\n');
}

void tool_path::take_away(std::string_view name) const
{
    std::filesystem::remove(place.file(name));
}

std::string tool_path::arguments_of(std::string_view name) const
{
    return read_file(place.file(std::string(name) + ".arguments"));
}

} // namespace rig
