// ARexx scripts: finding them, running them by the interpreter, and sending their commands to ports. For a
// program that runs one script and ends; the window's program never runs the interpreter itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rexx {

inline constexpr std::size_t LongestScript = std::size_t{16} << 20U; // bytes
inline constexpr std::string_view NoHost = "REXX";                   // where commands go at first

// A program to run.
struct Script {
    std::string Name; // for messages and PARSE SOURCE
    std::string Source;
    std::optional<std::string> Arguments{}; // one text; nothing: none were given
    std::string Host{NoHost};               // the port that gets its commands until it says ADDRESS
};

// The path of a script: a name with ":" or "/" is looked for there alone (of the host when it begins with "/"
// and leads to something), others in the current drawer and then in REXX:. A name without an extension is
// tried with ".rexx" first. Nothing with IoErr 205, 212 for a drawer.
[[nodiscard]] std::optional<std::string> FindScript(std::string_view name);

// The text of a script file, which must begin with a comment. Nothing with IoErr, 121 where the comment is
// missing.
[[nodiscard]] std::optional<std::string> ReadScript(const std::string& path);

// Runs it to its end: the number that it exits with, 20 after an error in it, which is told on the error
// output. Its commands run, SAY writes to the standard output.
[[nodiscard]] int RunScript(const Script& script);

// What a command of a script comes back with.
struct HostAnswer {
    int Rc = 0;
    std::optional<std::string> Result{};
};

// Sends a command to a host: "COMMAND" runs it as a command line, "REXX" as the name of a script with its
// arguments, "AREXX" the same without waiting, any other name is that of a port. 20 without a result when
// there is no such port, or it ends before it has answered.
[[nodiscard]] HostAnswer SendToHost(std::string_view host, const std::string& command);

} // namespace rexx
