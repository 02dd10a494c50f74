// All keys of the main window, and the further buttons of the mouse.
#pragma once

#include "locations/Tabs.h"

namespace solvane {

// Serves Code with Qualifier and KeyText. A key without a meaning in this state does nothing. WithWindow: the
// caller is to close the window, which ends the program or sends it to the background.
[[nodiscard]] Closing HandleRawKeys();

// What the preferences give a further mouse button or the wheel with Control held to do; Code has which.
void HandleMouseButton();

} // namespace solvane
