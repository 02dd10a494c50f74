// The body of one instance: start-up in its order, the main loop, shutdown.
#pragma once

#include "platform/application/Start.h"

namespace solvane {

// Runs the instance to its end. Every failure has shown its message when this returns.
void MyProgram(const application::StartMessage& start);

} // namespace solvane
