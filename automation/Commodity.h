// The program as a background service with a hot key; it comes with the
// keyboard, and until then it cannot be set up.
#pragma once

namespace solvane {

[[nodiscard]] bool SetUpCommodity();
void ShutDownCommodity();

} // namespace solvane
