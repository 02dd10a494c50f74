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

// The user wants the window to work in: it comes to the front, comes back from its icon or, of a background
// program, is opened. Results in where to go on.
[[nodiscard]] Station ShowProgram();

// What the close gadget does: ends the program, or leaves it in the background.
void LeaveWindow();

// Closes the window for good or, as a background program, for a while; saves the preferences.
void CloseMainWindow();

// Closes the window for a rebuild; tabs and preferences stay.
void CloseMainWindowUpdate();

// Keeps the open locations, closes the window and frees what belongs to its screen, before entry A or B.
void CloseForRebuild();

} // namespace solvane
