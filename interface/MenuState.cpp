#include "interface/MenuState.h"

#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/Processes.h"
#include "interface/SpeedBars.h"
#include "interface/StateTable.h"
#include "model/History.h"
#include "model/Prefs.h"
#include "sak/Menus.h"

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
    Objects.Back->SetDisabled(!CanGoBack());
    Objects.Forward->SetDisabled(!CanGoForward());
    Objects.History->SetDisabled(!HistoryList || SAK_GenericListCount(*HistoryList) <= 1);
}

std::array<LayoutSwitch, 9> LayoutSwitches() {
    const bool preview = Prefs.PreviewPane != 0;
    return {{{MenuLayoutBookmarks, Prefs.BookmarksBar != 0},
             {MenuLayoutToolbar, Prefs.Toolbar != 0},
             {MenuLayoutUserButtons, Prefs.UserButtonsBar != 0},
             {MenuLayoutNavigation, Prefs.NavigationPane != 0},
             {MenuLayoutPreviewHorizontal, preview && Prefs.PreviewStyle == 0},
             {MenuLayoutPreviewVertical, preview && Prefs.PreviewStyle != 0},
             {MenuLayoutDetails, Prefs.DetailsPane != 0},
             {MenuLayoutThumbnail, Prefs.ThumbnailPane != 0},
             {MenuLayoutStatusBar, Prefs.StatusBar != 0}}};
}

} // namespace solvane
