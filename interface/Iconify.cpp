#include "interface/Iconify.h"

namespace solvane {

bool RegisterApp() {
    return true;
}

void UnregisterApp() {}

bool Iconify() {
    return false;
}

void Uniconify() {}

bool SetUpAppMenuItem() {
    return true;
}

void ShutDownAppMenuItem() {}

void ClearPreviewPaneAfterUniconify() {}

} // namespace solvane
