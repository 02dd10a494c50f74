// What the main loop does when the watched drawer has changed on disk.
#pragma once

namespace solvane {

// Serves one signal of the drawer monitor. A change that the program made itself (Changes) is swallowed once;
// any other reloads a drawer on show, its scroll position and selection kept, and tells so.
void DrawerChanged();

} // namespace solvane
