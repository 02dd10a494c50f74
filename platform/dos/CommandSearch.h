// From the first word of a command line to the program that it means.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dos {

struct FoundProgram {
    std::string HostPath;
    std::string Name;    // as the file is called
    bool IsOurs = false; // takes its arguments as they were typed, see System.h
};

// A word with ":" or "/" is a path, of the host when it begins with "/" and leads to something there. Others
// are looked for in C:, PROGDIR:Tools and the Shell's path without regard to case, and then on the host's
// path. Programs in those drawers and in PROGDIR: are ours, unless they are soft links to an absolute host
// path. What is not executable is passed over. Nothing with IoErr: 205, 305 when all that was found is not
// executable, 212 for a drawer, 226 when a disk on the way does not answer.
[[nodiscard]] std::optional<FoundProgram> FindProgram(std::string_view word);

// The same on the host's path alone, or for an absolute host path.
[[nodiscard]] std::optional<FoundProgram> FindHostProgram(const std::string& name);

// The drawers that are searched, in order; each may be a multi-assign.
[[nodiscard]] std::vector<std::string> ShellPath();

} // namespace dos
