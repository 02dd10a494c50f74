// The message ports of one instance.
#pragma once

#include "platform/exec/Ports.h"
#include "platform/exec/PublicPorts.h"
#include "platform/exec/Timer.h"

#include <memory>

namespace solvane {

// --- State: made by the entry point (port) and MPS_SetUp, freed by MPS_ShutDown ---

extern std::unique_ptr<exec::PublicPort> port; // names this instance to the others; number free once gone
extern std::unique_ptr<exec::MsgPort> UserPort;
extern std::unique_ptr<exec::MsgPort> ScrNotPort;
extern std::unique_ptr<exec::Timer> SAK_TimerMP; // progress of animations and sounds

} // namespace solvane
