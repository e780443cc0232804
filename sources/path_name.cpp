#include "sources/path_name.hpp"

#include <cstddef>
#include <cstring>

namespace vimbo
{

namespace
{

const char *last_separator(const char *path)
{
    const char *slash = std::strrchr(path, '/');
    return slash != nullptr ? slash : std::strrchr(path, '\\');
}

} // namespace

const char *path_name_part(const char *path)
{
    const char *separator = last_separator(path);
    if (separator != nullptr)
        return separator + 1;
    return *path == '\0' ? path : path + 1;
}

char *path_name_part(char *path)
{
    const char *name = path_name_part(static_cast<const char *>(path));
    return path + (name - path);
}

std::string_view path_parent(const char *path)
{
    const char *separator = last_separator(path);
    return {path, separator == nullptr ? 0 : static_cast<std::size_t>(separator - path)};
}

} // namespace vimbo
