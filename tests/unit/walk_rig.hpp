// A walk through a tree with all that it reports.
#pragma once

#include "platform/tree_walk.hpp"

#include <map>
#include <string>
#include <vector>

namespace rig
{

using vimbo::entry_kind;

struct visited {
    std::vector<std::string> order;
    std::map<std::string, entry_kind> kinds;
};

inline visited walk(const std::string &directory)
{
    visited seen;
    vimbo::walk_tree(
        directory.c_str(),
        [](const char *path, entry_kind kind, void *user) {
            auto &found = *static_cast<visited *>(user);
            found.order.emplace_back(path);
            found.kinds[path] = kind;
        },
        &seen);
    return seen;
}

} // namespace rig
