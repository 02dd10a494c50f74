// The one loop of an instance: opens, closes and rebuilds the window, waits for signals and serves them in a
// fixed order. What an event means is decided in EventDispatch.
#pragma once

namespace solvane {

// Where the program goes next. Handlers never touch the window sequence; they return or set what the loop
// acts on.
enum class Station {
    EntryA, // build everything anew: screen, menus, columns, window
    EntryB, // columns, screen notification, tabs, images, then the window
    EntryC, // open the window
    WaitLoop,
    Quit, // the quit confirmation
    End,
};

// Runs from the first window to the confirmed end.
void RunMainLoop();

} // namespace solvane
