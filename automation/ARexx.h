// The ARexx port of this instance; its commands come with their features.
#pragma once

#include "platform/exec/Tasks.h"

namespace solvane {

// --- State ---

extern exec::SignalMask ARexxSignal; // set while commands wait; 0 without a port. Written by SetUpARexx

// --- Functions ---

[[nodiscard]] bool SetUpARexx();
void ShutDownARexx();

// Runs the commands that wait. A handler leaves in JumpToARexxCmd what only the loop may do.
void HandleARexx();

} // namespace solvane
