// The connection to the display: opened once before the first window or gadget, closed after the last. It
// stands behind exec::Wait of the task that opens it, so that waiting and serving the display are one thing.
#pragma once

#include <string>
#include <string_view>

namespace intuition {

// What stands in the way of a display: none is named, or the one that is named does not answer.
enum class DisplayProblem { None, NotNamed, Silent };
struct DisplayFailure {
    DisplayProblem Problem = DisplayProblem::None;
    std::string Display = {}; // the name of a silent one
};

// Connects to the user's display and installs the event pump for the calling task; the one task that may
// use windows and gadgets from then on. Of the arguments only the program's name is taken, so no argument
// of the user's is mistaken for one of the toolkit's. False when no display answers; WhyNoDisplay() says
// why, and requesters go to standard error. A second call on an open display changes nothing.
[[nodiscard]] bool OpenDisplay(int argc, char** argv);

// Removes the pump and closes the connection. Every window and gadget must be gone.
void CloseDisplay();

[[nodiscard]] bool DisplayIsOpen();

// Why the last OpenDisplay failed.
[[nodiscard]] const DisplayFailure& WhyNoDisplay();

// The language of what the toolkit says of itself (dialogs for files, the menus of fields), by its English
// name ("german"); English where there are no texts of it. Of the display's task, before it is open or while.
void SetLanguage(std::string_view language);

// Tells the user that something is not possible: the bell, and a mark on the window's task bar entry.
void DisplayBeep();

} // namespace intuition
