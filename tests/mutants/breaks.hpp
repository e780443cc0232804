// Small breaks such as a maintainer makes by accident, and where a source has room
// for them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mutants
{

inline constexpr std::array<std::string_view, 6> break_kinds = {
    "edge",      // a comparison's edge, a sign, one logical operator for another
    "constant",  // a number by one, a truth value
    "statement", // one that is dropped
    "condition", // one that is negated
    "arguments", // two neighbours that are swapped
    "result",    // a truth value that is returned as its contrary
};

struct planted_break {
    std::string_view kind;
    std::size_t offset; // in bytes
    std::size_t length; // of what is replaced
    std::string replacement;
};

/// All that this source has room for.
std::vector<planted_break> breaks_in(std::string_view source);

/// The source with this break.
std::string with_break(std::string_view source, const planted_break &chosen);

} // namespace mutants
