// The user's screens: the outputs of his desktop, by the names that it gives them. "Workbench" is the one
// that it counts as the first. Which of them a window opens on is in its WindowSpec.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace intuition {

inline constexpr std::string_view WorkbenchScreen = "Workbench";

// The name as the desktop writes it, found with regard to case first and then without; nothing where there is
// no such screen.
[[nodiscard]] std::optional<std::string> FindScreen(std::string_view name);

// Has lost called with the name of each screen that goes from now on, while the display's task waits; an
// empty one ends it. Nothing without an open display.
void WatchScreens(std::function<void(const std::string& name)> lost);

} // namespace intuition
