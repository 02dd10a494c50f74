// The drawer commands of C:, found by name in one table. A command reads its arguments by its template and
// works through the dos service alone.
#pragma once

#include "platform/commands/Context.h"
#include "platform/dos/ReadArgs.h"

#include <span>
#include <string_view>

namespace commands {

struct Command {
    std::string_view Name; // as it is called; case does not matter
    std::string_view Template;
    std::string_view Purpose; // one line for people
    int (*Run)(Context& context, const dos::ArgResults& arguments);
};

// All commands, by name.
[[nodiscard]] std::span<const Command> Commands() noexcept;
[[nodiscard]] const Command* FindCommand(std::string_view name) noexcept;

// Name and version of all commands, "amiga 2.4 (21.11.2026)".
[[nodiscard]] std::string_view OwnVersion() noexcept;

// Reads the arguments (quotes and escapes untouched) and runs the command; its return code. "?" alone prints
// the template, and takes the arguments from the input where there is one. Arguments that do not fit the
// template give 20, an output that takes no more at least 10 with the reason in IoErr.
[[nodiscard]] int RunCommand(const Command& command, std::string_view arguments, Context& context);

} // namespace commands
