// A tool that does what its arguments say, one after the other, for tests that
// need a process of a known behaviour behind a pipe.
//
// Without arguments of that kind it looks for them in a file beside itself: one of its
// own name with ".actions" behind it. It then notes the arguments that it was given
// instead, one a line, in the file of its name with ".arguments".
//
//   say TEXT        print the text (backslash escapes as printf knows them: \n)
//   bytes HEX       print the bytes that are written so
//   write N         print N letters, with no line feed
//   lines N         print N bytes of short lines
//   zeros N         print N zero bytes
//   digits N        print N digits, with no line feed
//   numbers N X     print N lines that read X
//   begin FILE      add a letter to the file
//   flood FILE      print letters until the file exists, or its folder is gone
//   shut            close standard output
//   await FILE      wait until the file exists, or its folder is gone
//   touch FILE      create the file
//   find FILE       end with status 1 where there is no such file or folder
//   leave FILE      leave a process behind that holds the pipe and awaits FILE
//   die N           end by signal N, or killed from outside with status N
//   exit N          end with status N
#include "tests/support/stub_system.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace
{

// True when the file is there, or the folder that it should come into is not: a
// test that failed must not leave this behind.
bool is_over(const std::filesystem::path &path)
{
    std::error_code ignored;
    return std::filesystem::exists(path, ignored) ||
           !std::filesystem::exists(path.parent_path(), ignored);
}

void await_file(const std::string &path)
{
    constexpr int most_looks = 12000; // two minutes
    constexpr std::chrono::milliseconds pause(10);
    for (int i = 0; i < most_looks && !is_over(path); ++i)
        std::this_thread::sleep_for(pause);
}

void flood(const std::string &path)
{
    constexpr int lines_between_looks = 10000;
    while (!is_over(path))
        for (int i = 0; i < lines_between_looks; ++i)
            if (std::fputs("on and on\n", stdout) < 0)
                std::_Exit(1);
}

// The same over and over, this many bytes of it in all.
void repeat(std::string_view text, long count)
{
    std::string piece;
    while (piece.size() < 65536)
        piece += text;
    for (long left = count; left > 0; left -= static_cast<long>(piece.size()))
        std::fwrite(piece.data(), 1,
                    std::min<std::size_t>(piece.size(), static_cast<std::size_t>(left)), stdout);
}

void say(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool line_feed = text.substr(i, 2) == "\\n";
        std::fputc(line_feed ? '\n' : text[i], stdout);
        i += line_feed ? 1 : 0;
    }
}

void say_bytes(const std::string &digits)
{
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        std::fputc(std::stoi(digits.substr(i, 2), nullptr, 16), stdout);
}

void print_numbers(int count, const std::string &number)
{
    for (int i = 0; i < count; ++i)
        std::printf("%s\n", number.c_str());
}

void perform_with_file(std::string_view action, const std::string &file)
{
    std::fflush(stdout);
    if (action == "await")
        await_file(file);
    else if (action == "flood")
        flood(file);
    else if (action == "find") {
        if (!std::filesystem::exists(file))
            std::exit(1);
    } else if (action == "leave")
        stub::leave_another(file);
    else
        std::ofstream(std::filesystem::path(file), std::ios::app) << (action == "begin" ? "x" : "");
}

bool perform_with_number(std::string_view action, const std::string &text)
{
    const long number = std::atol(text.c_str());
    if (action == "write")
        repeat("abcdefghijklmnopqrstuvwxyz", number);
    else if (action == "lines")
        repeat("y\n", number);
    else if (action == "zeros")
        repeat({"\0", 1}, number);
    else if (action == "digits")
        repeat("1", number);
    else if (action == "exit")
        std::exit(static_cast<int>(number));
    else if (action == "die") {
        std::fflush(stdout);
        stub::die(static_cast<int>(number));
    } else
        return false;
    return true;
}

// How many arguments the action takes; -1 when there is none of that name.
int perform(std::string_view action, const std::string &first, const std::string &second)
{
    if (action == "shut") {
        std::fflush(stdout);
        stub::close_output();
        return 0;
    }
    if (action == "numbers") {
        print_numbers(std::atoi(first.c_str()), second);
        return 2;
    }
    if (action == "say")
        say(first);
    else if (action == "bytes")
        say_bytes(first);
    else if (action == "await" || action == "flood" || action == "leave" || action == "find" ||
             action == "touch" || action == "begin")
        perform_with_file(action, first);
    else if (!perform_with_number(action, first))
        return -1;
    return 1;
}

// As a shell parts them, single quotes included.
std::vector<std::string> words_of(const std::string &text)
{
    std::vector<std::string> words;
    bool quoted = false;
    bool within = false;
    for (const char character : text) {
        const bool part = quoted || (character != ' ' && character != '\n');
        if (part && !within)
            words.emplace_back();
        within = part;
        if (character == '\'')
            quoted = !quoted;
        else if (part)
            words.back() += character;
    }
    return words;
}

// The actions of the file beside the tool, if there is one.
bool read_actions(const std::filesystem::path &tool, std::vector<std::string> &given)
{
    std::filesystem::path actions(tool);
    std::ifstream file(actions.replace_extension(".actions"));
    if (!file)
        return false;
    std::filesystem::path noted(tool);
    noted.replace_extension(".arguments");
    std::filesystem::path unfinished(noted);
    unfinished += ".new";
    {
        std::ofstream list(unfinished, std::ios::binary);
        for (const std::string &argument : given)
            list << argument << '\n';
    }
    // Renamed into place, so that nobody reads half a list.
    std::filesystem::rename(unfinished, noted);
    std::string line;
    std::getline(file, line);
    given = words_of(line);
    return true;
}

} // namespace

int main(int argument_count, char *arguments[])
{
    stub::start(argument_count, arguments);
    std::vector<std::string> actions(arguments + 1, arguments + argument_count);
    read_actions(stub::own_path(), actions);
    actions.resize(actions.size() + 2); // what the last one takes may be missing
    for (std::size_t i = 0; i + 2 < actions.size();) {
        const int taken = perform(actions[i], actions[i + 1], actions[i + 2]);
        if (taken < 0) {
            std::fprintf(stderr, "stub_tool: what is \"%s\"?\n", actions[i].c_str());
            return 2;
        }
        i += 1 + static_cast<std::size_t>(taken);
    }
    return 0;
}
