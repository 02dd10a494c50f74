// The drawer monitor: one watched drawer at a time, one signal per burst of changes in it. What a change
// leads to is decided by whoever waits for the signal. All calls belong to the task that made
// SAK_SetUpNotify.
#pragma once

#include "platform/exec/Tasks.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// --- State, written by this module alone ---

extern exec::SignalMask SAK_NotifySignal; // mask to wait for; 0 before set-up and after shut-down
extern std::uint16_t SAK_NotifyStarted;   // a drawer is being watched

// Takes the signal. False when the task has none left.
[[nodiscard]] bool SAK_SetUpNotify();

// Watches another drawer from now on; changes of the one before that were not fetched yet are forgotten. For
// the drawer that is watched already nothing changes: what happens meanwhile is never missed. A drawer that
// cannot be watched is not, without a word.
void SAK_ChangeNotify(std::string_view path);

// Goes on watching the drawer of the last SAK_ChangeNotify; nothing while it is watched, or before there was
// one.
void SAK_StartNotify();
void SAK_StopNotify();

// Ends the watch and gives the signal back; harmless before set-up.
void SAK_ShutDownNotify();

} // namespace solvane
