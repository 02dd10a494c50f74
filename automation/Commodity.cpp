#include "automation/Commodity.h"

namespace solvane {

exec::SignalMask CxSignal = 0;

bool HasCommodities() {
    return false;
}

bool SetUpCommodity() {
    return false;
}

void ShutDownCommodity() {}

} // namespace solvane
