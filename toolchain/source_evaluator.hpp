// Runs a material source: a Lua program without files or processes that makes
// its moves with jump(x, y) and mark(x, y).
#pragma once

#include "toolchain/move_list.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace toolchain
{

struct evaluation_request {
    std::string_view source;
    double unit_um; // what 1 means in jump and mark
    /// Called about ten times a second; when it returns true the source is left
    /// where it is.
    std::function<bool()> stop_wanted;
};

struct evaluation_outcome {
    bool stopped;
    std::string error; // empty, or what went wrong with the source's line
};

/// Runs the source; its moves are appended to `moves` and what it prints goes to
/// standard output.
evaluation_outcome evaluate(const evaluation_request &request, move_list &moves);

} // namespace toolchain
