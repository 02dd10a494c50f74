// The program as an icon, and its registration with the desktop. Tray icon and registration come with their
// feature; until then there is no place for an icon.
#pragma once

namespace solvane {

[[nodiscard]] bool RegisterApp();
void UnregisterApp();
// False when the desktop has no place for the icon: the window then stays.
[[nodiscard]] bool Iconify();
void Uniconify();
[[nodiscard]] bool SetUpAppMenuItem();
void ShutDownAppMenuItem();
void ClearPreviewPaneAfterUniconify();

} // namespace solvane
