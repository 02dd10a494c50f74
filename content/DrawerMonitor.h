// What the main loop does when the watched drawer has changed on disk.
#pragma once

namespace solvane {

// Serves one signal of the drawer monitor. A change that the program made itself (Changes) is swallowed once;
// any other reloads a drawer on show, its scroll position and selection kept, and tells so. While a name is
// edited in its row it waits for the end of that.
void DrawerChanged();

// Serves the change that has waited for a name to be edited. Called in each round of the loop, whatever has
// ended the editing.
void ServeDelayedChange();

} // namespace solvane
