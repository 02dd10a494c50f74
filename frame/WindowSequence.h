// Opening, closing and rebuilding the main window without losing what the user has open.
#pragma once

#include "frame/MainLoop.h"

namespace solvane {

// The three entries; each results in where to go on. A failure has shown its message and results in End.
[[nodiscard]] Station RunEntryA();
[[nodiscard]] Station RunEntryB();
[[nodiscard]] Station RunEntryC();

// Takes the program off the desktop where it is an icon; results in the entry that opens its window. A
// program that was started as an icon does its first-opening work then.
[[nodiscard]] Station LeaveIcon();

// Closes the window for good or, as a background program, for a while; saves the preferences.
void CloseMainWindow();

// Closes the window for a rebuild; tabs and preferences stay.
void CloseMainWindowUpdate();

// Keeps the open locations, closes the window and frees what belongs to its screen, before entry A or B.
void CloseForRebuild();

} // namespace solvane
