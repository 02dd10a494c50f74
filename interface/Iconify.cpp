#include "interface/Iconify.h"

namespace solvane {

exec::SignalMask AppMenuSignal = 0;
exec::SignalMask AppLibSignal = 0;

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
