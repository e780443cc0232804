// C++ source text in pieces, as far as breaks are planted in it.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace mutants
{

enum class token_kind { name, number, literal, symbol };

/// A piece of a source, by its place in it.
struct token {
    token_kind kind;
    std::size_t offset;
    std::string_view text;
};

/// All pieces but comments, preprocessor lines and blanks.
std::vector<token> tokens_of(std::string_view source);

/// The index behind the bracket that closes the one at `open`; the number of tokens
/// where nothing does.
std::size_t behind_closing(const std::vector<token> &tokens, std::size_t open);

} // namespace mutants
