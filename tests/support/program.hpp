// Child processes of a test: programs that end with it at the latest.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace rig
{

/// For a fresh child: it ends together with the test that started it.
void end_with_parent();

/// Has this process, and what it starts, find no Wayland compositor: it would be taken
/// before the X server of the test.
void hide_wayland();

/// A program under test, with its output in files.
class program
{
public:
    struct options {
        std::vector<std::string> arguments;   // the program's own path first
        std::vector<std::string> environment; // "NAME=value" beside what is inherited
        std::string directory;                // empty: here
        std::string output;                   // where standard output goes
        std::string errors = {};              // and standard error; empty: there too
    };
    explicit program(const options &how);
    ~program();
    program(const program &) = delete;
    program &operator=(const program &) = delete;

    pid_t id() const
    {
        return process;
    }
    bool running();
    /// Waits for its end; its wait status, or -1 when it did not come in time.
    int wait_for_end(std::chrono::milliseconds limit = std::chrono::seconds(20));

private:
    pid_t process = 0;
    int status = 0;
    bool ended = false;
};

} // namespace rig
