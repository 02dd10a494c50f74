// Places in tabs: several at once, a tab's twin, and the tabs of a window that is being rebuilt.
#pragma once

#include "model/LocationKind.h"

namespace solvane {

// Opens a tab on the place of the active one. Search results and duplicates have no twin.
void CloneTab();

// Opens each selected row that leads somewhere in a tab of its own; the last one is then on show.
void OpenMultipleNewTabs();

// The same in windows of their own, each a new instance.
void OpenMultipleNewSolvaneWindows();

// Opens a window of its own with the same tabs. Those that live in memory only are left out.
void CloneWindow();

// Moves the open tabs to CommandLineTabsList, without rows, and sets ReopenTabs and Offset, so that a rebuilt
// window shows them again. Search results, duplicates and archives are left out, as they live in memory only.
void GetOpenTabs();

} // namespace solvane
