#include "interface/Menus.h"

namespace solvane {

bool CreateMainMenuStrip() {
    return true;
}

bool CreateContextMenus() {
    return true;
}

void UpdateEntireMenuStrip() {}

void FreeMainMenuStrip() {}

void FreeContextMenus() {}

} // namespace solvane
