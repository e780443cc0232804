// Runs a material source: a Lua program without files or processes that makes
// its moves with jump(x, y) and mark(x, y).
#pragma once

#include "toolchain/move_list.hpp"

#include <string>
#include <string_view>

namespace toolchain
{

struct evaluation_request {
    std::string_view source;
    double unit_um; // what 1 means in jump and mark
};

/// Runs the source; its moves are appended to `moves` and what it prints goes to
/// standard output. Returns what went wrong, with the source's line, or an empty
/// text.
std::string evaluate(const evaluation_request &request, move_list &moves);

} // namespace toolchain
