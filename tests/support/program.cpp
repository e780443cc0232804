#include "tests/support/program.hpp"

#include "tests/support/wait.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace rig
{

namespace
{

std::vector<char *> pointers_to(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void redirect(int stream, const std::string &path)
{
    const int file =
        open(path.empty() ? "/dev/null" : path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(file, stream);
    close(file);
}

} // namespace

void end_with_parent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void hide_wayland()
{
    unsetenv("WAYLAND_DISPLAY");
    // The library looks for a compositor of its own accord here; without any directory
    // it complains on standard error.
    setenv("XDG_RUNTIME_DIR", P_tmpdir, 1);
}

program::program(const options &how)
{
    process = fork();
    if (process != 0)
        return;
    end_with_parent();
    redirect(STDOUT_FILENO, how.output);
    if (how.errors.empty())
        dup2(STDOUT_FILENO, STDERR_FILENO);
    else
        redirect(STDERR_FILENO, how.errors);
    hide_wayland();
    for (const std::string &variable : how.environment)
        putenv(const_cast<char *>(variable.c_str()));
    if (!how.directory.empty() && chdir(how.directory.c_str()) != 0)
        _exit(126);
    std::vector<std::string> arguments = how.arguments;
    const std::vector<char *> list = pointers_to(arguments);
    execvp(list[0], list.data());
    _exit(127);
}

program::~program()
{
    if (running()) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
}

bool program::running()
{
    if (!ended)
        ended = waitpid(process, &status, WNOHANG) == process;
    return !ended;
}

int program::wait_for_end(std::chrono::milliseconds limit)
{
    return wait_until([this] { return !running(); }, limit) ? status : -1;
}

} // namespace rig
