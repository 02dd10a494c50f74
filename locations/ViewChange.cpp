#include "locations/ViewChange.h"

#include "content/BuildLists.h"
#include "content/ViewStyles.h"
#include "interface/Menus.h"
#include "locations/PlaceFigures.h"
#include "locations/PlaceRouter.h"
#include "locations/RescanTabs.h"
#include "locations/TabRecords.h"
#include "model/Prefs.h"
#include "prefs/LoadSavePrefs.h"

namespace solvane {

namespace {

void Flip(std::int16_t PrefsRecord::*setting) {
    Prefs.*setting = Prefs.*setting == 0 ? 1 : 0;
    SavePrefs(0);
    UpdateMenus_ViewMisc();
}

// Of a setting that decides which rows there are, or how they look, everywhere.
void FlipRows(std::int16_t PrefsRecord::*setting) {
    Flip(setting);
    SetRescanAllTabs(WhichTabs::Others);
    ReloadLocation();
}

} // namespace

void ProcessInfoFiles() {
    FlipRows(&PrefsRecord::ProcessInfoFiles);
}

void ShowActualIcons() {
    FlipRows(&PrefsRecord::ShowActualIcons);
}

void ShowThumbnail() {
    Flip(&PrefsRecord::ShowThumbnail);
    TellContentSelection();
}

void ToggleHiddenEntries() {
    Flip(&PrefsRecord::ShowHiddenEntries);
    SetRescanAllTabsByLocation(LocationKind::Drawer, WhichTabs::Others);
    SetRescanAllTabsByLocation(LocationKind::Workbench, WhichTabs::Others);
    ReloadLocation();
}

void ChangeViewStyleOfTabs(std::int32_t style) {
    const auto setting = StyleSettingOf(LBLocation);
    const std::int32_t before = Prefs.*setting;
    ChangeViewStyle(style);
    if (Prefs.*setting == before || Prefs.ChangeAllTabs == 0) {
        return;
    }
    SetRescanAllTabsByLocation(LBLocation, WhichTabs::Others);
    GiveSettingToTabs(setting);
}

} // namespace solvane
