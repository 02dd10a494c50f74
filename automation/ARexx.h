// The ARexx port of this instance: other processes drive the program through it, and it drives others. What
// each command does stands with its handler, ARexxCommands has the table of them.
#pragma once

#include "platform/exec/Tasks.h"
#include "sak/Text.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// --- State ---

extern exec::SignalMask ARexxSignal; // set while commands or replies wait; 0 without a port. By SetUpARexx
extern Text<1024> ARexxReply;        // reply of the last command that was sent; work buffer of commands
extern std::int16_t ARexxError;      // 1: that reply told of a failure. By the reply hook

// --- Functions ---

// Opens the port ARexxPortBuffer. False when that cannot be done; nothing is shown.
[[nodiscard]] bool SetUpARexx();
void ShutDownARexx();

// Runs the commands that wait, up to the first that leaves something to the loop in JumpToARexxCmd or done.
void HandleARexx();

// Sends a command to the port of another instance or program; the reply comes later. False when there is no
// such port: the user is told unless quiet is not 0.
bool SendARexxMessage(std::string_view port, std::string_view command, int quiet);

} // namespace solvane
