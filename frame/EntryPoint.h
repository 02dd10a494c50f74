// From the start of the process to its end: opens the platform, claims an instance number, runs the program.
// Everything that a start decides before there is a window begins here.
#pragma once

namespace solvane {

// Runs one instance from start to end. argc and argv are those of main. Always results in 0, as the host's
// shells and desktops have nothing to gain from a number that no message explains.
int EntryPoint(int argc, char** argv);

} // namespace solvane
