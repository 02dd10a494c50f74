// All keys of the main window, and whatever stands for a key: mouse buttons, gadgets and commands that set
// Code and Qualifier.
#pragma once

#include "locations/Tabs.h"

#include <cstdint>

namespace solvane {

// Serves Code with Qualifier and KeyText. A key without a meaning in this state does nothing. WithWindow: the
// caller is to close the window, which ends the program or sends it to the background.
[[nodiscard]] Closing HandleRawKeys();

// The same for a key that nobody has pressed.
[[nodiscard]] Closing HandleKey(std::uint16_t code, std::uint16_t qualifier);

// What the preferences give a further mouse button or the wheel with Control held to do; Code has which.
[[nodiscard]] Closing HandleMouseButton();

} // namespace solvane
