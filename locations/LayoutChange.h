// Switching panes of the open window on and off, as the user picks it.
#pragma once

#include <cstdint>

namespace solvane {

// Values of ChooserSelected.
inline constexpr std::int32_t LayoutNavigation = 3, NoLayoutChange = 99;

// Reads the panes' weights into Prefs, and switches the pane that ChooserSelected names. Rows and selection
// of the Content list stay as they are.
void ChangeLayout();

} // namespace solvane
