// The screen that the window opens on: an output of the desktop by its name, or where the desktop puts it.
#pragma once

#include "platform/exec/Ports.h"
#include "sak/Text.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// What the screen system tells through ScrNotPort.
enum class ScreenEvent : std::uint32_t { ScreenCloses = 2, WorkbenchOpened = 4, WorkbenchCloses = 8 };

struct ScreenMessage : exec::Message {
    ScreenEvent What = ScreenEvent::WorkbenchOpened;
    Text<140> Screen; // the public name of the screen that closes
};

// --- State ---

extern Text<140> ActiveScreen; // the screen the window stands on, empty for the desktop's; by SetActiveScreen

// --- Functions ---

// Finds the screen that DefaultPubScreenID names. The name becomes the screen's own, and empty, for the
// desktop's choice, where there is no such screen.
void OpenMainScreen();
void SetActiveScreen();
void ReleaseActiveScreen();

// What scripts call the screen that the window opens on.
[[nodiscard]] std::string_view NameOfScreen();

// Has the port told of each screen that goes, until the end, which must come before that of the port.
void StartScreenNotification(exec::MsgPort& port);
void EndScreenNotification();

} // namespace solvane
