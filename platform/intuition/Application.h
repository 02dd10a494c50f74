// The connection to the display: opened once before the first window or gadget, closed after the last. It
// stands behind exec::Wait of the task that opens it, so that waiting and serving the display are one thing.
#pragma once

#include <string>

namespace intuition {

// Connects to the user's display and installs the event pump for the calling task; the one task that may
// use windows and gadgets from then on. Of the arguments only the program's name is taken, so no argument
// of the user's is mistaken for one of the toolkit's. False when no display answers; DisplayProblem() says
// why, and requesters go to standard error. A second call on an open display changes nothing.
[[nodiscard]] bool OpenDisplay(int argc, char** argv);

// Removes the pump and closes the connection. Every window and gadget must be gone.
void CloseDisplay();

[[nodiscard]] bool DisplayIsOpen();

// Why the last OpenDisplay failed, one English sentence for standard error.
[[nodiscard]] const std::string& DisplayProblem();

// Tells the user that something is not possible: the bell, and a mark on the window's task bar entry.
void DisplayBeep();

} // namespace intuition
