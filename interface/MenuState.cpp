#include "interface/MenuState.h"

namespace solvane {

void SetMenuState() {}

void SetToolbarState() {}

void SetHistoryGadgetsState() {}

void UpdateAllSpeedBars() {}

} // namespace solvane
