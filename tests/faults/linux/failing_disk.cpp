#include "tests/faults/linux/failing_disk.hpp"

#include "tests/faults/system_calls.hpp"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>

namespace rig
{

namespace
{

// A small disk at `directory` that no other process sees.
bool mount_disk(const std::string &directory)
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("disk", directory.c_str(), "tmpfs", 0, "size=512k,nr_inodes=32") == 0;
}

} // namespace

failing_disk::failing_disk(std::string directory, disk_fault fault)
    : place(std::move(directory)), kind(fault),
      mounted(fault != disk_fault::quota && mount_disk(place))
{
    if (!mounted && kind != disk_fault::quota)
        std::puts("no disk can be mounted here: the system's calls are refused instead");
}

failing_disk::~failing_disk()
{
    refused = {};
    if (mounted)
        umount2(place.c_str(), MNT_DETACH);
}

// First its bytes, then its files.
void failing_disk::fill() const
{
    const std::string bytes(4096, 'f');
    std::ofstream file(place + "/filler", std::ios::binary);
    while (file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
    }
    for (int i = 0; std::ofstream(place + "/filler" + std::to_string(i)); ++i) {
    }
}

void failing_disk::fail() const
{
    if (mounted && kind == disk_fault::full)
        fill();
    else if (mounted)
        EXPECT_EQ(mount(nullptr, place.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    else if (kind == disk_fault::read_only)
        refused = {.below = place, .opening = EROFS, .creating = EROFS, .removing = EROFS};
    else {
        const int error = kind == disk_fault::full ? ENOSPC : EDQUOT;
        constexpr std::size_t left = 4096;
        refused = {
            .below = place, .creating = error, .reserving = error, .writing = error, .room = left};
    }
}

namespace
{
constexpr uid_t nobody = 65534;
}

without_privileges::without_privileges()
{
    // For files alone, and undone at will.
    if (geteuid() == 0)
        setfsuid(nobody);
}

without_privileges::~without_privileges()
{
    if (geteuid() == 0)
        setfsuid(0);
}

} // namespace rig
