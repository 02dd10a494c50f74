// Whether and how this computer reaches the network; asked for by transfers, which come later.
#pragma once

namespace solvane {

[[nodiscard]] bool SAK_SetupNetworkInformation();
[[nodiscard]] bool SAK_GetNetworkInformation();
void SAK_ShutDownNetworkInformation();

} // namespace solvane
