// Any text as a path.
#include "sources/path_name.hpp"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string path(reinterpret_cast<const char *>(data), size);
    const char *text = path.c_str();
    const std::string_view whole(text);
    const std::string_view name = vimbo::path_name_part(text);
    const std::string_view parent = vimbo::path_parent(text);
    if (!whole.ends_with(name) || !whole.starts_with(parent) ||
        parent.size() + name.size() > whole.size() || name.find('/') != std::string_view::npos)
        std::abort();
    return 0;
}
