// The program as an icon, and its registration with the desktop.
#pragma once

#include "platform/exec/Ports.h"

#include <cstdint>
#include <memory>

namespace solvane {

// --- State ---

extern std::unique_ptr<exec::MsgPort> AppIconPort; // where icons send what the user does with them
extern std::unique_ptr<exec::MsgPort> AppMenuPort; // the same of the entry in a desktop menu; null without
extern std::unique_ptr<exec::MsgPort> AppLibPort;  // the same of the dock entry; null while not registered
extern exec::SignalMask AppMenuSignal;             // of AppMenuPort; 0 without
extern exec::SignalMask AppLibSignal;              // of AppLibPort and of picked notices; 0 without
extern std::uint16_t appShowIcon;                  // 1: the program is registered without a dock entry
extern std::uint16_t IconifiedAppDocky;            // 1: the dock entry stands for the program

// --- Functions ---

// Whether what is dropped on the window or on the icon is for a drawer on show.
[[nodiscard]] bool AcceptDD();

// Opens the ways for notices and, where the user wants it or the program lives on in it, puts its entry into
// the dock, which is the desktop's tray. False when no signal is free.
[[nodiscard]] bool RegisterApp();
void UnregisterApp();
// Shows or removes the entry in the dock. It stands there all the time where appShowInAmiDock wants it, and
// always while it stands for the window. False when there is none.
bool RenewDockEntry();

// Closes the window, its gadgets stay, and leaves the program in the forms that the preferences name; with
// none of them in the dock. A form that fails is told to the user. False, with nothing changed, for a program
// on a screen of its own.
[[nodiscard]] bool Iconify();
// Takes the icon off the desktop; the main loop opens the window and clears Iconified. Nothing for a program
// that is no icon.
void Uniconify();

[[nodiscard]] bool SetUpAppMenuItem();
void ShutDownAppMenuItem();
void ClearPreviewPaneAfterUniconify();

} // namespace solvane
