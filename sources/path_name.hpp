// Names and parents of paths. Both '/' and '\' separate components.
#pragma once

#include <string_view>

namespace vimbo
{

/// What follows the last '/', or where there is none the last '\'. Without
/// either it is all but the first character ("abc" gives "bc"): so a name saved
/// after a deletion, whose path is "-", keeps that "-" in front.
const char *path_name_part(const char *path);
char *path_name_part(char *path);

/// What stands before the separator that path_name_part goes by; empty where
/// there is none.
std::string_view path_parent(const char *path);

} // namespace vimbo
