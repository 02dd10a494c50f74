#include "automation/Commodity.h"

namespace solvane {

bool SetUpCommodity() {
    return false;
}

void ShutDownCommodity() {}

} // namespace solvane
