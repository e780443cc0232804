// Disks that fail, and a process that files refuse.
#pragma once

#include <string>

namespace rig
{

enum class disk_fault { full, quota, read_only };

/// A disk of its own at this directory, which must exist, as long as it lives. Where
/// the system lets this process mount one it is real, but for the quota;
/// elsewhere the system's calls are refused as such a disk does.
class failing_disk
{
public:
    failing_disk(std::string directory, disk_fault fault);
    ~failing_disk();
    failing_disk(const failing_disk &) = delete;
    failing_disk &operator=(const failing_disk &) = delete;

    /// From now on it takes nothing more.
    void fail() const;

private:
    void fill() const;

    std::string place;
    disk_fault kind;
    bool mounted;
};

/// Makes the process one that files refuse, even if it is root's, as long as it lives.
class without_privileges
{
public:
    without_privileges();
    ~without_privileges();
    without_privileges(const without_privileges &) = delete;
    without_privileges &operator=(const without_privileges &) = delete;
};

} // namespace rig
