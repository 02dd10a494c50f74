// The program as a background service: a key of the whole desktop brings its window up, wherever the user is.
#pragma once

#include "platform/exec/Tasks.h"
#include "sak/Text.h"

namespace solvane {

// --- State ---

extern exec::SignalMask CxSignal; // the hot key was pressed; 0 while there is no broker
extern Text<130> HotKeyOfIcon;    // the tool type HOTKEY of the program's icon; written at start

// --- Functions ---

// Whether there can be a background service at all. Without, Prefs.UseCommodity has no effect, and is kept.
[[nodiscard]] bool HasCommodities();

// Takes the hot key of the program's icon (HOTKEY), else of the preferences: CommodityInForce. False, after a
// requester and with Prefs.UseCommodity switched off and saved, for a key that there is not or that another
// program has.
[[nodiscard]] bool SetUpCommodity();
void ShutDownCommodity();

} // namespace solvane
