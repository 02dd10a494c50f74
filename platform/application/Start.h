// How this process was started: where its drawers lie, which arguments came from where, how big its stack is.
// Paths here are the host's own; they are handed to dos::SetUpSystem and dos::FromHostPath, never taken
// apart.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace application {

// What stands beside the program at run time.
struct ProgramPlaces {
    std::string ProgramName;    // file name the process was started under
    std::string ProgramDrawer;  // becomes "PROGDIR:"; empty when the installation is broken
    std::string SystemSkeleton; // what a new system drawer is made from
};

// Finds the drawers from the place of the running binary: "../share/solvane" as seen from it.
[[nodiscard]] ProgramPlaces FindProgram(const char* firstArgument);

// The option with which the desktop entry starts the program.
inline constexpr const char* WorkbenchOption = "--workbench";

// The arguments of a start. From the desktop (the Workbench) Arguments are the objects that were picked; from
// a Shell they are the words of the command line.
struct StartMessage {
    bool FromWorkbench = false;
    std::vector<std::string> Arguments;
    std::string CurrentDirectory; // of the host, for paths that start there; empty when it is gone
};
[[nodiscard]] StartMessage ReadStartMessage(int argc, char** argv);

// Makes sure that the standard streams are open (on nothing, where they were closed), so that no file of the
// user's ever takes their place, and that a reader who goes away does not end the program.
void SecureStandardStreams();

// Bytes of stack that the process may use; unlimited counts as the largest number.
[[nodiscard]] std::size_t StackSize();

// The processor as the host names it, and what it can do beyond its base set, both on one line.
struct Machine {
    std::string Name;
    std::string Extensions;
};
[[nodiscard]] Machine DescribeMachine();

// The file that the environment asks a picture of the window for ("SOLVANE_SNAPSHOT"); mostly empty. The wish
// is taken out of the environment, so that no program started from here is under it. Called once.
[[nodiscard]] std::string SnapshotFile();

} // namespace application
