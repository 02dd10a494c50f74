// The main menu strip and the context menus. Their entries come with the features that they pick;
// until then there is no strip to build and these routines succeed at once.
#pragma once

namespace solvane {

[[nodiscard]] bool CreateMainMenuStrip();
[[nodiscard]] bool CreateContextMenus();
void UpdateEntireMenuStrip();
void AttachMenuStrip();
void SetSortByDirection();
void FreeMainMenuStrip();
void FreeContextMenus();

} // namespace solvane
