#include "interface/MenuState.h"

#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/Processes.h"
#include "interface/SpeedBars.h"
#include "interface/StateTable.h"
#include "model/History.h"
#include "model/Prefs.h"
#include "sak/Menus.h"

#include <cstdint>

namespace solvane {

namespace {

void ShowMenuState(const ItemStates& states) {
    for (const ItemState& state : states) {
        SAK_SetMenuAttrs(MenuStripObj.get(), {{.Id = state.Item, .Disabled = !state.Enabled}});
    }
}

} // namespace

void SetMenuState() {
    const auto state = PresentState();
    if (state && SMSPort != nullptr) {
        TellHelper(SMSPort, *state);
    } else if (state) {
        ShowMenuState(DoSetMenuState(*state)); // no helper runs yet
    }
}

void SetToolbarState() {
    const auto state = PresentState();
    if (!state || Prefs.Toolbar == 0) {
        return;
    }
    if (STSPort != nullptr) {
        TellHelper(STSPort, *state);
    } else {
        ShowToolbarState(DoSetToolbarState(*state));
    }
}

void ShowHelperResults() {
    while (const auto result = TakeHelperResult()) {
        ShowMenuState(result->Menu);
        ShowToolbarState(result->Toolbar); // nothing of an empty one
    }
}

void SetHistoryGadgetsState() {
    UpdateMenus_History();
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
