// Commands for tests: the stub tool with its actions, and what a command did.
#pragma once

#include <string>

namespace rig
{

/// The command line that makes the stub tool do this, see stub_tool.cpp.
inline std::string stub(const std::string &actions)
{
    return "exec " VIMBO_STUB_TOOL " " + actions;
}

} // namespace rig
