// The program behind a "CON:" window: a terminal's text, a line to type in, and no more life than the
// commands that use it.
#pragma once

namespace console {

// Shows the terminal that is standard input. The arguments are left, top, width, height (each may be empty),
// title, options in one word ("AUTO WAIT INACTIVE NOCLOSE"), and what the window says itself: its language by
// its English name, the names of its line and of its text, what stands behind the title in the end. One "R"
// goes to standard output when the display is there; otherwise the reason goes to standard error and the
// result is 20. Ends when nobody has the terminal open any more, with WAIT when the window is closed.
int RunConsole(int argc, char** argv);

} // namespace console
