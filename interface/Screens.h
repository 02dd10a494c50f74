// The screen that the window opens on. The window opens where the desktop puts it until outputs can be
// chosen by name.
#pragma once

namespace solvane {

[[nodiscard]] bool OpenMainScreen();
void SetActiveScreen();
void ReleaseActiveScreen();
[[nodiscard]] bool StartScreenNotification();
void EndScreenNotification();

} // namespace solvane
