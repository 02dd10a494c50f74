// Starting ARexx scripts from a program with a port: in a process of their own, which sends its commands to
// that port until the script says otherwise.
#pragma once

#include <string>
#include <string_view>

namespace rexx {

// Starts a command line ("rx ...") and returns at once; its streams lead nowhere. False with IoErr when it
// cannot be started. The script may run on when this process has ended.
[[nodiscard]] bool StartScript(std::string_view line, std::string_view host);

// For the process of the script, called once: the port that started it, "REXX" when it was none. Programs
// that are started from there do not see it.
[[nodiscard]] std::string TakeScriptHost();

} // namespace rexx
