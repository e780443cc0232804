#include "tests/mutants/tokens.hpp"

#include <algorithm>
#include <array>
#include <cctype>

namespace mutants
{

namespace
{

bool begins_name(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool continues_name(char c)
{
    return begins_name(c) || std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// Behind the quote that ends the literal which begins here.
std::size_t literal_end(std::string_view source, std::size_t at)
{
    const char quote = source[at];
    for (++at; at < source.size() && source[at] != quote; ++at)
        at += source[at] == '\\' ? 1 : 0;
    return std::min(at + 1, source.size());
}

std::size_t number_end(std::string_view source, std::size_t at)
{
    while (at < source.size() &&
           (continues_name(source[at]) || source[at] == '.' ||
            (source[at] == '\'' && continues_name(source[at + 1])) ||
            ((source[at] == '-' || source[at] == '+') && std::tolower(source[at - 1]) == 'e')))
        ++at;
    return at;
}

std::size_t symbol_end(std::string_view source, std::size_t at)
{
    constexpr std::array longer = {
        "<<=", ">>=", "<=>", "...", "->*", "==", "!=", "<=", ">=", "&&", "||", "++", "--",
        "+=",  "-=",  "*=",  "/=",  "%=",  "&=", "|=", "^=", "<<", ">>", "->", "::"};
    for (const std::string_view symbol : longer)
        if (source.substr(at).starts_with(symbol))
            return at + symbol.size();
    return at + 1;
}

// Behind what is no token here: a blank, a comment or a preprocessor line; `at`
// where there is none.
std::size_t skip(std::string_view source, std::size_t at, bool line_begins)
{
    const auto behind = [&](std::string_view end) {
        const std::size_t found = source.find(end, at);
        return found == std::string_view::npos ? source.size() : found + end.size();
    };
    if (std::isspace(static_cast<unsigned char>(source[at])) != 0)
        return at + 1;
    if (source.substr(at).starts_with("//") || (line_begins && source[at] == '#'))
        return behind("\n");
    if (source.substr(at).starts_with("/*"))
        return behind("*/");
    return at;
}

token token_at(std::string_view source, std::size_t at)
{
    token_kind kind = token_kind::symbol;
    std::size_t end = 0;
    if (begins_name(source[at])) {
        kind = token_kind::name;
        end = at;
        while (end < source.size() && continues_name(source[end]))
            ++end;
    } else if (std::isdigit(static_cast<unsigned char>(source[at])) != 0) {
        kind = token_kind::number;
        end = number_end(source, at);
    } else if (source[at] == '"' || source[at] == '\'') {
        kind = token_kind::literal;
        end = literal_end(source, at);
    } else {
        end = symbol_end(source, at);
    }
    return {kind, at, source.substr(at, end - at)};
}

} // namespace

std::vector<token> tokens_of(std::string_view source)
{
    std::vector<token> tokens;
    bool line_begins = true;
    for (std::size_t at = 0; at < source.size();) {
        const std::size_t next = skip(source, at, line_begins);
        if (next != at) {
            line_begins = source[next - 1] == '\n' || (line_begins && next == at + 1);
            at = next;
            continue;
        }
        tokens.push_back(token_at(source, at));
        at += tokens.back().text.size();
        line_begins = false;
    }
    return tokens;
}

std::size_t behind_closing(const std::vector<token> &tokens, std::size_t open)
{
    int depth = 0;
    for (std::size_t i = open; i < tokens.size(); ++i) {
        const std::string_view text = tokens[i].text;
        depth += text == "(" || text == "[" || text == "{" ? 1 : 0;
        depth -= text == ")" || text == "]" || text == "}" ? 1 : 0;
        if (depth == 0)
            return i + 1;
    }
    return tokens.size();
}

} // namespace mutants
