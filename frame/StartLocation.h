// Which location a window shows first, and the locations that the user named for it.
#pragma once

namespace solvane {

// Goes where the preferences want a window to start: the first start-up tab, else the default location.
void GoToStartLocation();

// Shows each location of CommandLineTabsList in a tab of its own, then clears the list.
void ShowCommandLineTabs();

} // namespace solvane
