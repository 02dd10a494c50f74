// The program as an icon, and its registration with the desktop. So far registration opens the way for
// notices, and there is no place for an icon.
#pragma once

#include "platform/exec/Tasks.h"

namespace solvane {

// --- State: 0 without a sender ---

extern exec::SignalMask AppMenuSignal; // the user has picked the program's entry of a desktop menu
extern exec::SignalMask AppLibSignal;  // the desktop asks for the window to come to the front

// --- Functions ---

[[nodiscard]] bool RegisterApp();
void UnregisterApp();
// False when the desktop has no place for the icon: the window then stays.
[[nodiscard]] bool Iconify();
void Uniconify();
[[nodiscard]] bool SetUpAppMenuItem();
void ShutDownAppMenuItem();
void ClearPreviewPaneAfterUniconify();

} // namespace solvane
