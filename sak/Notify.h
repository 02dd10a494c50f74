// The drawer monitor: one watched drawer at a time, one signal per burst of changes in it; others that were
// put aside go on noting theirs. What a change leads to is decided by whoever waits for the signal. All calls
// belong to the task that made SAK_SetUpNotify.
#pragma once

#include "platform/dos/Notify.h"
#include "platform/exec/Tasks.h"

#include <cstdint>
#include <memory>
#include <string>
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

// True when the watched drawer has changed since the last call: the signal is that of the watches put aside
// too.
[[nodiscard]] bool SAK_NotifyHasChanged();

// A watch that was put aside. Watches nothing when Path is empty. It must go before SAK_ShutDownNotify.
struct KeptNotify {
    std::unique_ptr<dos::Notification> Request;
    std::string Path;
};

// Puts the running watch aside; nothing is watched for the loop until the next one.
[[nodiscard]] KeptNotify SAK_KeepNotify();
// As SAK_ChangeNotify, and gives back the watch before, if there was one on another drawer.
[[nodiscard]] KeptNotify SAK_ExchangeNotify(std::string_view path);
// Makes a watch that was put aside the running one, without a look at its drawer; what it has noted meanwhile
// SAK_NotifyHasChanged tells. Nothing for one that watches nothing.
void SAK_ResumeNotify(KeptNotify kept);

// Ends the watch and gives the signal back; harmless before set-up.
void SAK_ShutDownNotify();

} // namespace solvane
