// What the stub tool does by the system's own means.
#pragma once

#include <filesystem>
#include <string>

namespace stub
{

/// Called first of all.
void start(int &argument_count, char **&arguments);

/// The running program's file.
std::filesystem::path own_path();

/// Closes standard output for good.
void close_output();

/// Leaves a process behind that holds the output and ends once the file exists.
void leave_another(const std::string &file);

/// Ends this process from outside itself, with this signal or status.
[[noreturn]] void die(int how);

} // namespace stub
