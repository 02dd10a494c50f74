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

} // namespace

void ProcessInfoFiles() {
    Flip(&PrefsRecord::ProcessInfoFiles);
    SetRescanAllTabs(WhichTabs::Others);
    ReloadLocation();
}

void ShowActualIcons() {
    Flip(&PrefsRecord::ShowActualIcons);
    SetRescanAllTabs(WhichTabs::Others);
    ReloadLocation();
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
