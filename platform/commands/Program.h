// The program "amiga": one command line, or under the name of a command that command.
#pragma once

namespace commands {

struct Command;

// Sets dos up and runs what the arguments say:
//   amiga LINE      one command line; more words are put together to one
//   amiga           what commands there are
//   List WORDS      a program that is called by the name of a command is that command
// With `only` the program is that command, whatever it is called. The standard streams are those of the
// command, and the drawer of the host the current one. Gives the return code, 20 where dos cannot be set up.
[[nodiscard]] int RunProgram(int argc, char** argv, const Command* only = nullptr);

} // namespace commands
