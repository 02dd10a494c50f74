// What of menus, toolbars and history gadgets can be picked in the present state. The bars themselves come
// with their features; until then these routines have nothing to set.
#pragma once

namespace solvane {

void SetMenuState();
void SetToolbarState();
void SetHistoryGadgetsState();

} // namespace solvane
