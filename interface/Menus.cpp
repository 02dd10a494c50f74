#include "interface/Menus.h"

namespace solvane {

bool CreateMainMenuStrip() {
    return true;
}

bool CreateContextMenus() {
    return true;
}

void UpdateEntireMenuStrip() {}

void AttachMenuStrip() {}

void SetSortByDirection() {}

void FreeMainMenuStrip() {}

void FreeContextMenus() {}

} // namespace solvane
