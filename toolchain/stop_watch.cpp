#include "toolchain/stop_watch.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <mutex>
#include <thread>

namespace toolchain
{

namespace
{

constexpr char marker_path[] = "/tmp/mero.end";
constexpr auto interval = std::chrono::milliseconds(100);

std::mutex unfinished_lock;
std::string unfinished_file;

bool stop_is_wanted()
{
    struct stat marker = {};
    return stat(marker_path, &marker) == 0;
}

[[noreturn]] void stop(int status)
{
    // Held to the end, so that no other file can become the unfinished one.
    const std::lock_guard held(unfinished_lock);
    unlink(marker_path);
    if (!unfinished_file.empty())
        unlink(unfinished_file.c_str());
    std::puts("stopped");
    std::fflush(stdout);
    _exit(status);
}

} // namespace

void watch_for_stop(int status)
{
    unlink(marker_path);
    std::thread([status] {
        for (;;) {
            std::this_thread::sleep_for(interval);
            if (stop_is_wanted())
                stop(status);
        }
    }).detach();
}

void set_unfinished_file(const std::string &path)
{
    const std::lock_guard held(unfinished_lock);
    unfinished_file = path;
}

} // namespace toolchain
