// Runs whole command lines: redirections, variables and inserted output first, then the command. Drawer
// commands run within this process, all others as programs.
#pragma once

#include "platform/commands/Context.h"
#include "platform/dos/CommandLine.h"

#include <optional>
#include <string_view>

namespace commands {

// One line; its return code, which stays in context.LastCode as well. A blank line and a comment leave that
// as it is. A command that is none of ours is run as dos::System does. 10 for an unknown one, 20 for a line
// that cannot be read.
int RunLine(Context& context, std::string_view line);

// The line taken apart, variables and the output of commands put in. Nothing with IoErr.
[[nodiscard]] std::optional<dos::ParsedCommand> ParseLine(Context& context, std::string_view line);

} // namespace commands
