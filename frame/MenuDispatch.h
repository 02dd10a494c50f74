// What each item of the menus leads to, and with the same number each button of the toolbar.
#pragma once

#include <cstdint>

namespace solvane {

// Does what the item stands for. The heads of menus do nothing. What abandons the window is left in
// JumpToARexxCmd.
void HandleMenuPick(std::uint16_t item);

// Whether the item has a command, be it one that waits for its feature.
[[nodiscard]] bool HasCommand(std::uint16_t item);

} // namespace solvane
