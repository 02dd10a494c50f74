// Which items of the menus and buttons of the bars can be picked in the present state. The state is judged by
// helpers beside the main process; what they find out is shown when their results are served.
#pragma once

#include "interface/MenuIds.h"

#include <array>

namespace solvane {

// Let a helper judge the state of this moment and return at once. While no location is shown all stays as it
// is.
void SetMenuState();
void SetToolbarState();
// Shows what the helpers have found out since.
void ShowHelperResults();

void SetHistoryGadgetsState();

// The bars and panes in the order in which menu and chooser offer them.
struct LayoutSwitch {
    MenuId Item;
    bool IsOn;
};
[[nodiscard]] std::array<LayoutSwitch, 9> LayoutSwitches();

} // namespace solvane
