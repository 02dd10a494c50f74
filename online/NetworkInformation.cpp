#include "online/NetworkInformation.h"

namespace solvane {

bool SAK_SetupNetworkInformation() {
    return true;
}

bool SAK_GetNetworkInformation() {
    return true;
}

void SAK_ShutDownNetworkInformation() {}

} // namespace solvane
