// The system's calls as the tests of faults have them: the linker puts functions
// of ours in their place, which refuse what a test wants refused.
#pragma once

#include <atomic>
#include <cstddef>
#include <ctime>
#include <functional>
#include <string>

namespace rig
{

struct refused_calls {
    // True: the call is refused.
    bool stream = false;
    bool process_end = false;
    bool pipe = false;
    bool process = false;
    bool thread = false;

    /// What follows concerns paths that begin so.
    std::string below = {};
    // The error of the call; 0: it works.
    int opening = 0;   // a file for writing
    int creating = 0;  // a file or a directory
    int reserving = 0; // room for a file
    int writing = 0;   // once `room` bytes are written; EINTR: before each byte
    int closing = 0;
    int removing = 0;
    std::size_t room = 0;
};

/// As before any test.
void let_all_calls_work();

/// All works when it is empty.
extern refused_calls refused;

/// Where the calendar clock stands; 0: it goes.
extern std::time_t clock_stands;

/// The longest time-out of a poll, in milliseconds; -1: none had one.
extern std::atomic<int> longest_poll;

/// Called before each opening of a file, when there is one.
extern std::function<void()> before_open;

} // namespace rig
