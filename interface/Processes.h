// The three background helpers: for the menu state, the toolbar state and versions. The main process tells
// them what to do with a message and goes on with the reply, which comes before the work. What they find out
// comes back as a message too: only the main process touches menus and gadgets.
#pragma once

#include "interface/StateTable.h"
#include "platform/exec/Ports.h"

#include <memory>
#include <optional>

namespace solvane {

// --- State ---

extern std::unique_ptr<exec::MsgPort> ReplyPort;  // of the main process, for all three
extern std::unique_ptr<exec::MsgPort> ResultPort; // of the main process: what the helpers found out
extern exec::MsgPort *SMSPort, *STSPort, *GVPort; // the helpers' command ports; null: not there

// --- Functions ---

// Starts the helpers in the order menu, toolbar, version. False when one of them cannot be started.
[[nodiscard]] bool SetUpProcesses();
// Ends them in the same order, each after the work that it is at.
void ShutDownProcesses();

// Sends work about that state to a helper and goes on at once; its reply is taken with a later command.
// Nothing without a port.
void TellHelper(exec::MsgPort* port, const WindowState& state);

// What a helper has found out.
struct HelperResult {
    ItemStates Menu, Toolbar; // one of them is empty
};
// The oldest result that waits; nothing when none does.
[[nodiscard]] std::optional<HelperResult> TakeHelperResult();

} // namespace solvane
