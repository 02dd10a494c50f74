// The screen that the window opens on. The window opens where the desktop puts it until outputs can be
// chosen by name.
#pragma once

#include "platform/exec/Ports.h"
#include "sak/Text.h"

#include <cstdint>

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

[[nodiscard]] bool OpenMainScreen();
void SetActiveScreen();
void ReleaseActiveScreen();
void ScreenToFront();
[[nodiscard]] bool StartScreenNotification();
void EndScreenNotification();

} // namespace solvane
