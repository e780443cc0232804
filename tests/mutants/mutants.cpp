// Plants breaks in sources, for scripts/mutants.
//
//   mutants draw SEED FILE...       prints all breaks that there is room for, in an
//                                   order drawn by the seed, one a line:
//                                   FILE OFFSET KIND LINE WHAT, tabs between them
//   mutants plant FILE OFFSET KIND  rewrites the file with this break
#include "tests/mutants/breaks.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace
{

using namespace mutants;

std::string read_file(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// In one line, and not too long a one.
std::string in_short(std::string_view code)
{
    constexpr std::size_t longest = 70;
    std::string line;
    for (const char c : code)
        if (c != ' ' || !line.ends_with(' '))
            line += c == '\n' || c == '\t' ? ' ' : c;
    return line.size() > longest ? line.substr(0, longest) + "..." : line;
}

struct candidate {
    std::string file;
    planted_break chosen;
    std::string line; // as it is printed
};

void find_candidates(const std::string &file, std::vector<std::vector<candidate>> &by_kind)
{
    const std::string source = read_file(file);
    for (const planted_break &one : breaks_in(source)) {
        const auto kind = std::ranges::find(break_kinds, one.kind) - break_kinds.begin();
        const auto line =
            1 + std::count(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(one.offset),
                           '\n');
        const std::string_view old = std::string_view(source).substr(one.offset, one.length);
        std::ostringstream printed;
        printed << file << '\t' << one.offset << '\t' << one.kind << '\t' << line << '\t'
                << in_short(old) << "  ->  " << in_short(one.replacement);
        by_kind[static_cast<std::size_t>(kind)].push_back({file, one, printed.str()});
    }
}

// A kind is drawn first: there are more constants than all else together.
void draw(unsigned int seed, const std::vector<std::string> &files)
{
    std::vector<std::vector<candidate>> by_kind(break_kinds.size());
    for (const std::string &file : files)
        find_candidates(file, by_kind);
    std::mt19937 random(seed);
    std::erase_if(by_kind, [](const auto &kind) { return kind.empty(); });
    while (!by_kind.empty()) {
        std::vector<candidate> &kind = by_kind[random() % by_kind.size()];
        std::swap(kind[random() % kind.size()], kind.back());
        std::cout << kind.back().line << '\n';
        kind.pop_back();
        std::erase_if(by_kind, [](const auto &left) { return left.empty(); });
    }
}

void plant(const std::string &file, std::size_t offset, std::string_view kind)
{
    const std::string source = read_file(file);
    for (const planted_break &one : breaks_in(source)) {
        if (one.offset != offset || one.kind != kind)
            continue;
        std::ofstream(file, std::ios::binary) << with_break(source, one);
        return;
    }
    throw std::runtime_error("no such break in " + file);
}

} // namespace

int main(int argument_count, char *arguments[])
{
    const std::vector<std::string> words(arguments + 1, arguments + argument_count);
    try {
        if (words.size() >= 3 && words[0] == "draw")
            draw(static_cast<unsigned int>(std::stoul(words[1])), {words.begin() + 2, words.end()});
        else if (words.size() == 4 && words[0] == "plant")
            plant(words[1], std::stoul(words[2]), words[3]);
        else
            throw std::runtime_error("draw SEED FILE... | plant FILE OFFSET KIND");
        return 0;
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "mutants: %s\n", fault.what());
        return 1;
    }
}
