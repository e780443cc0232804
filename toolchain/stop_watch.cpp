#include "toolchain/stop_watch.hpp"

#include "platform/files.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>
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

[[noreturn]] void stop(int status)
{
    // Held to the end, so that no other file can become the unfinished one.
    const std::lock_guard held(unfinished_lock);
    vimbo::remove_file(marker_path);
    if (!unfinished_file.empty())
        vimbo::remove_file(unfinished_file.c_str());
    std::puts("stopped");
    std::fflush(stdout);
    std::_Exit(status);
}

} // namespace

void watch_for_stop(int status)
{
    vimbo::remove_file(marker_path);
    std::thread([status] {
        for (;;) {
            std::this_thread::sleep_for(interval);
            if (vimbo::path_exists(marker_path))
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
