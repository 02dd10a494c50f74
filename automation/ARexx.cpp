#include "automation/ARexx.h"

namespace solvane {

exec::SignalMask ARexxSignal = 0;

bool SetUpARexx() {
    return true;
}

void ShutDownARexx() {}

void HandleARexx() {}

} // namespace solvane
