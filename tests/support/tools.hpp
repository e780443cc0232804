// Commands for tests: the stub tool with its actions, and tools that are not there.
#pragma once

#include <string>

namespace rig
{

/// The command line that makes the stub tool do this, see stub_tool.cpp.
std::string stub(const std::string &actions);

/// The status of a tool that the stub tool's "die" has ended so.
int status_of_killed(int how);

/// A command line of a tool that the system's shell does not find, its complaint
/// dropped.
std::string missing_tool();

/// Sets a variable of this process, which tools inherit.
void set_variable(const char *name, const std::string &value);

/// The path under which the evaluator is told of the edited text.
std::string handed_text_path();

} // namespace rig
