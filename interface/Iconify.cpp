#include "interface/Iconify.h"

#include "interface/Ringhio.h"

namespace solvane {

exec::SignalMask AppMenuSignal = 0;
exec::SignalMask AppLibSignal = 0;

bool RegisterApp() {
    AppLibSignal = OpenNotices();
    return true;
}

void UnregisterApp() {
    CloseNotices();
    AppLibSignal = 0;
}

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
