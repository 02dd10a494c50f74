#include "interface/MenuState.h"

#include "interface/MainLayout.h"
#include "interface/SpeedBars.h"
#include "interface/StateTable.h"
#include "model/History.h"

#include <cstdint>

namespace solvane {

void SetMenuState() {}

void SetToolbarState() {
    if (const auto state = PresentState()) {
        ShowToolbarState(*state);
    }
}

void SetHistoryGadgetsState() {
    if (Objects.Back == nullptr) {
        return;
    }
    const auto entries =
        HistoryList ? static_cast<std::int64_t>(SAK_GenericListCount(*HistoryList)) : std::int64_t{0};
    Objects.Back->SetDisabled(HistorySelected < 0 || HistorySelected + 1 >= entries);
    Objects.Forward->SetDisabled(HistorySelected <= 0);
    Objects.History->SetDisabled(entries <= 1);
}

} // namespace solvane
