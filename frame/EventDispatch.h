// What each event of the window, and each command left by an ARexx handler, leads to.
#pragma once

#include "frame/MainLoop.h"

namespace solvane {

// Fetches and dispatches window events until none remain or one leads to the window sequence.
[[nodiscard]] Station ServeWindowEvents();

// Does what an ARexx handler left in JumpToARexxCmd, and clears it.
[[nodiscard]] Station ActOnARexxJump();

} // namespace solvane
