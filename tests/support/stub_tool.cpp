// A tool that does what its arguments say, one after the other, for tests that
// need a process of a known behaviour behind a pipe.
//
//   say TEXT        print the text (backslash escapes as printf knows them: \n)
//   write N         print N letters, with no line feed
//   numbers N X     print N lines that read X
//   flood FILE      print letters until the file exists, or its folder is gone
//   shut            close standard output
//   await FILE      wait until the file exists, or its folder is gone
//   touch FILE      create the file
//   leave FILE      leave a process behind that holds the pipe and awaits FILE
//   die N           end by signal N
//   exit N          end with status N
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace
{

// True when the file is there, or the folder that it should come into is not: a
// test that failed must not leave this behind.
bool is_over(const std::string &path)
{
    const std::string folder = path.substr(0, path.rfind('/'));
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 || stat(folder.c_str(), &status) != 0;
}

void await_file(const std::string &path)
{
    constexpr int most_looks = 12000; // two minutes
    constexpr unsigned int pause = 10000;
    for (int i = 0; i < most_looks && !is_over(path); ++i)
        usleep(pause);
}

void flood(const std::string &path)
{
    constexpr int lines_between_looks = 10000;
    while (!is_over(path))
        for (int i = 0; i < lines_between_looks; ++i)
            if (std::fputs("on and on\n", stdout) < 0)
                std::_Exit(1);
}

void say(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool line_feed = text.substr(i, 2) == "\\n";
        std::fputc(line_feed ? '\n' : text[i], stdout);
        i += line_feed ? 1 : 0;
    }
}

void write_letters(long count)
{
    for (long i = 0; i < count; ++i)
        std::fputc('a' + static_cast<int>(i % 26), stdout);
}

void print_numbers(int count, const char *number)
{
    for (int i = 0; i < count; ++i)
        std::printf("%s\n", number);
}

void leave_child(const char *path)
{
    std::fflush(stdout);
    if (fork() != 0)
        return;
    await_file(path);
    _exit(0);
}

void touch(const char *path)
{
    FILE *file = std::fopen(path, "w");
    if (file != nullptr)
        std::fclose(file);
}

// The arguments that the action takes; -1 when there is none of that name.
int perform(std::string_view action, char *const arguments[])
{
    if (action == "shut") {
        std::fflush(stdout);
        close(STDOUT_FILENO);
        return 0;
    }
    if (action == "numbers") {
        print_numbers(std::atoi(arguments[0]), arguments[1]);
        return 2;
    }
    if (action == "say")
        say(arguments[0]);
    else if (action == "write")
        write_letters(std::atol(arguments[0]));
    else if (action == "await") {
        std::fflush(stdout);
        await_file(arguments[0]);
    } else if (action == "flood")
        flood(arguments[0]);
    else if (action == "touch")
        touch(arguments[0]);
    else if (action == "leave")
        leave_child(arguments[0]);
    else if (action == "die") {
        std::fflush(stdout);
        raise(std::atoi(arguments[0]));
    } else if (action == "exit")
        std::exit(std::atoi(arguments[0]));
    else
        return -1;
    return 1;
}

} // namespace

int main(int argument_count, char *arguments[])
{
    for (int i = 1; i < argument_count;) {
        const int taken = perform(arguments[i], arguments + i + 1);
        if (taken < 0) {
            std::fprintf(stderr, "stub_tool: what is \"%s\"?\n", arguments[i]);
            return 2;
        }
        i += 1 + taken;
    }
    return 0;
}
