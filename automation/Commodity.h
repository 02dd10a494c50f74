// The program as a background service with a hot key; it comes with the
// keyboard, and until then it cannot be set up.
#pragma once

#include "platform/exec/Tasks.h"

namespace solvane {

// --- State ---

extern exec::SignalMask CxSignal; // the hot key was pressed or a command came; 0 while there is no broker

// --- Functions ---

// Whether there can be a background service at all. Without, Prefs.UseCommodity counts as off.
[[nodiscard]] bool HasCommodities();

[[nodiscard]] bool SetUpCommodity();
void ShutDownCommodity();

} // namespace solvane
