#include "tests/mutants/breaks.hpp"

#include "tests/mutants/tokens.hpp"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

namespace mutants
{

namespace
{

class break_finder
{
public:
    explicit break_finder(std::string_view whole_source)
        : source(whole_source), tokens(tokens_of(whole_source))
    {
    }

    std::vector<planted_break> find()
    {
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            if (text(i) == "static_assert") {
                i = behind_closing(tokens, i + 1);
                continue;
            }
            find_edge(i);
            find_constant(i);
            find_condition(i);
            find_arguments(i);
            find_result(i);
            if (begins_statement(i))
                find_statement(i);
        }
        return std::move(found);
    }

private:
    std::string_view text(std::size_t i) const
    {
        return i < tokens.size() ? tokens[i].text : std::string_view();
    }
    bool is_name(std::size_t i) const
    {
        return i < tokens.size() && tokens[i].kind == token_kind::name;
    }
    std::size_t end_of(std::size_t i) const
    {
        return tokens[i].offset + tokens[i].text.size();
    }
    // The source from one token to the one before another.
    std::string_view text_of(std::size_t first, std::size_t behind) const
    {
        return source.substr(tokens[first].offset, end_of(behind - 1) - tokens[first].offset);
    }

    void add(std::string_view kind, std::size_t first, std::size_t behind, std::string replacement)
    {
        found.push_back(
            {kind, tokens[first].offset, text_of(first, behind).size(), std::move(replacement)});
    }

    // Blanks on both sides: else it is a template's bracket, or a reference.
    bool is_between_operands(std::size_t i) const
    {
        const std::size_t before = tokens[i].offset;
        const std::size_t behind = end_of(i);
        return before > 0 && behind < source.size() &&
               std::isspace(static_cast<unsigned char>(source[before - 1])) != 0 &&
               std::isspace(static_cast<unsigned char>(source[behind])) != 0;
    }

    void find_edge(std::size_t i)
    {
        static const std::map<std::string_view, std::string_view> others = {
            {"<", "<="},  {"<=", "<"},  {">", ">="},  {">=", ">"}, {"==", "!="}, {"!=", "=="},
            {"+", "-"},   {"-", "+"},   {"*", "/"},   {"/", "*"},  {"%", "/"},   {"&&", "||"},
            {"||", "&&"}, {"+=", "-="}, {"-=", "+="}, {"&", "|"},  {"|", "&"},   {"^", "|"},
            {"<<", ">>"}, {">>", "<<"}, {"&=", "|="}, {"|=", "&="}};
        const auto other = others.find(text(i));
        if (other != others.end() && is_between_operands(i))
            add("edge", i, i + 1, std::string(other->second));
    }

    void find_constant(std::size_t i)
    {
        if (text(i) == "true" || text(i) == "false")
            add("constant", i, i + 1, text(i) == "true" ? "false" : "true");
        if (tokens[i].kind != token_kind::number)
            return;
        // One more or, for half of the numbers, one less.
        const bool more = text(i)[0] == '0' || i % 2 == 0;
        add("constant", i, i + 1, '(' + std::string(text(i)) + (more ? " + 1)" : " - 1)"));
    }

    void find_condition(std::size_t i)
    {
        if ((text(i) != "if" && text(i) != "while") || text(i + 1) != "(")
            return;
        const std::size_t behind = behind_closing(tokens, i + 1);
        for (std::size_t inner = i + 2; inner + 1 < behind; ++inner)
            if (text(inner) == ";" || text(inner) == "=")
                return; // it declares something
        add("condition", i + 1, behind, "(!" + std::string(text_of(i + 1, behind)) + ')');
    }

    // Where the arguments of a list begin, and behind them the list's end.
    std::vector<std::size_t> argument_starts(std::size_t open) const
    {
        const std::size_t behind = behind_closing(tokens, open);
        std::vector<std::size_t> starts = {open + 1};
        for (std::size_t i = open + 1; i + 1 < behind;) {
            if (text(i) == "(" || text(i) == "[" || text(i) == "{") {
                i = behind_closing(tokens, i);
                continue;
            }
            if (text(i) == ",")
                starts.push_back(i + 1);
            ++i;
        }
        starts.push_back(behind);
        return starts;
    }

    void find_arguments(std::size_t i)
    {
        if (!is_name(i) || text(i + 1) != "(")
            return;
        const std::vector<std::size_t> starts = argument_starts(i + 1);
        for (std::size_t at = 0; at + 2 < starts.size(); ++at) {
            const std::size_t first = starts[at];
            const std::size_t second = starts[at + 1];
            const std::size_t behind = starts[at + 2] - 1;
            if (second >= behind || text_of(first, second - 1) == text_of(second, behind))
                continue;
            add("arguments", first, behind,
                std::string(text_of(second, behind)) + ", " +
                    std::string(text_of(first, second - 1)));
        }
    }

    void find_result(std::size_t i)
    {
        // Of a returned comparison; one of the operators above changes less of it.
        if (text(i) != "return")
            return;
        std::size_t end = i + 1;
        bool compares = false;
        for (; end < tokens.size() && text(end) != ";"; ++end)
            compares = compares || text(end) == "==" || text(end) == "!=" || text(end) == "&&" ||
                       text(end) == "||";
        if (compares && text(i + 1) != "{")
            add("result", i + 1, end, "!(" + std::string(text_of(i + 1, end)) + ')');
    }

    bool begins_statement(std::size_t i) const
    {
        if (i == 0)
            return false;
        const std::string_view before = text(i - 1);
        if (before == ";" || before == "{" || before == "}" || before == "else" || before == "do")
            return true;
        return before == ")" && closes_condition(i - 1);
    }

    bool closes_condition(std::size_t closing) const
    {
        int depth = 0;
        for (std::size_t i = closing + 1; i-- > 0;) {
            depth += text(i) == ")" ? 1 : 0;
            depth -= text(i) == "(" ? 1 : 0;
            if (depth == 0)
                return i > 0 &&
                       (text(i - 1) == "if" || text(i - 1) == "for" || text(i - 1) == "while");
        }
        return false;
    }

    // What begins with a name or a step and is no declaration.
    void find_statement(std::size_t i)
    {
        static const std::set<std::string_view> kept = {
            "auto",    "case",   "class",  "const",    "constexpr", "default", "do",
            "else",    "enum",   "extern", "for",      "if",        "inline",  "namespace",
            "private", "public", "return", "static",   "struct",    "switch",  "template",
            "typedef", "using",  "while",  "explicit", "friend",    "union"};
        const bool step = text(i) == "++" || text(i) == "--" || text(i) == "*";
        if ((!is_name(i) && !step) || kept.contains(text(i)))
            return;
        std::size_t next = i + 1;
        while (text(next) == "::" && is_name(next + 1))
            next += 2;
        static const std::set<std::string_view> acting = {"(",  ".", "->", "=",  "+=", "-=", "++",
                                                          "--", "[", ";",  "|=", "&=", "*=", "^="};
        if (!step && !acting.contains(text(next)))
            return;
        std::size_t end = i;
        while (end < tokens.size() && text(end) != ";") {
            const bool opens = text(end) == "(" || text(end) == "[" || text(end) == "{";
            end = opens ? behind_closing(tokens, end) : end + 1;
        }
        if (end < tokens.size())
            add("statement", i, end, "(void)0");
    }

    std::string_view source;
    std::vector<token> tokens;
    std::vector<planted_break> found;
};

} // namespace

std::vector<planted_break> breaks_in(std::string_view source)
{
    return break_finder(source).find();
}

std::string with_break(std::string_view source, const planted_break &chosen)
{
    return std::string(source.substr(0, chosen.offset)) + chosen.replacement +
           std::string(source.substr(chosen.offset + chosen.length));
}

} // namespace mutants
