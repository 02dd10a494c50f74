// What a command of ours was started with, as the text that ReadArgs parses.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace dos {

// The environment variable in which System hands a command its arguments as they were typed, quotes
// and escapes untouched.
inline constexpr const char* CommandLineVariable = "SOLVANE_COMMAND_LINE";

// The arguments of this process, for the start of main: those that System left in the environment,
// from where they are removed so that no child takes them for its own, or else (also where those were
// meant for another process) the words behind the first of argv as one line.
[[nodiscard]] std::string ProgramArguments(int argc, char** argv);

// Words of the host as one line. A word stays bare, so that it can be a keyword, when ReadArgs
// reads it back as it is; others are quoted.
[[nodiscard]] std::string JoinWords(std::span<const std::string> words);

} // namespace dos
