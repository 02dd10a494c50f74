// The table of the ARexx commands: names, numbers, handlers, templates.
#pragma once

#include "platform/rexx/ARexxPort.h"

#include <span>

namespace solvane {

// All commands, by number. A number is also what a command that must run in the main loop leaves in
// JumpToARexxCmd.
[[nodiscard]] std::span<const rexx::Command> ARexxCommands();

} // namespace solvane
