// Reads what the user asked for at the start: words of the command line, or objects and tool types from the
// desktop.
#pragma once

#include "platform/application/Start.h"

#include <string>
#include <vector>

namespace solvane {

// Fills CommandLineTabsList and the start-up variables. False ends the process; the message was shown.
[[nodiscard]] bool ArgumentParser(const application::StartMessage& start);

// The words of a host command line as the one line that ReadArgs parses: "NAME=value" of an option and bare
// switches stay keywords, all else is quoted where it must be.
[[nodiscard]] std::string ArgumentLine(const std::vector<std::string>& words);

// Least stack of a start from the desktop, in bytes.
inline constexpr std::size_t LeastStack = 131072;

} // namespace solvane
