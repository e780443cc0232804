// Tools that stand in for the real ones on the PATH of this process.
#pragma once

#include "tests/support/scratch.hpp"

#include <string>
#include <string_view>

namespace rig
{

/// Puts a folder of its own in front of the PATH as long as it lives. A tool
/// that is put there notes its arguments, one a line, in a file of the folder.
class tool_path
{
public:
    tool_path();
    ~tool_path();
    tool_path(const tool_path &) = delete;
    tool_path &operator=(const tool_path &) = delete;

    /// Makes `name` a tool that then does these actions of the stub tool.
    void put(std::string_view name, std::string_view actions) const;

    /// Removes the tool that was put there.
    void take_away(std::string_view name) const;

    /// The arguments of the tool's last run, one a line; empty before any.
    std::string arguments_of(std::string_view name) const;

    std::string file(std::string_view name) const
    {
        return place.file(name);
    }
    std::string folder() const
    {
        return place.path().generic_string();
    }

private:
    scratch_directory place;
    std::string previous;
};

} // namespace rig
