#include "locations/RescanTabs.h"

#include "content/BuildLists.h"
#include "content/ViewStyles.h"
#include "interface/Menus.h"
#include "locations/PlaceRouter.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "model/Prefs.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/FilenameSupport.h"

#include <vector>

namespace solvane {

namespace {

template <class Predicate>
void MarkTabs(const Predicate& concerns) {
    if (!TabsList) {
        return;
    }
    BeforeSwitchTabs(1);
    for (TabsNode& node : *TabsList) {
        if (node.TabUserData != ExtraTab && concerns(node)) {
            node.RescanTab = 1;
        }
    }
}

// "Work:Games/" and "Work:Games" are one place.
Text<1024> WithoutFinalSlash(std::string_view path) {
    return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

} // namespace

void SetRescanAllTabs() {
    MarkTabs([](const TabsNode& node) {
        return node.Location == LocationKind::Drawer ||
               (node.Location >= LocationKind::Bookmarks && node.Location <= LocationKind::Computer);
    });
}

void SetRescanAllTabsByLocation(LocationKind location) {
    const bool handled = (location >= LocationKind::Bookmarks && location <= LocationKind::FTPSites) ||
                         location == LocationKind::Archive || location == LocationKind::Drawer;
    if (handled) {
        MarkTabs([location](const TabsNode& node) { return node.Location == location; });
    }
}

void SetRescanAllTabsByPath(std::string_view path, std::uint32_t tabNumber) {
    const Text<1024> wanted = WithoutFinalSlash(path);
    MarkTabs([&wanted, tabNumber](const TabsNode& node) {
        return node.TabNumber != tabNumber && WithoutFinalSlash(node.Path) == wanted;
    });
}

void SetRescanAllTabsComputer() {
    SetRescanAllTabsByLocation(LocationKind::Computer);
}

void ToggleHiddenEntries() {
    Prefs.ShowHiddenEntries = Prefs.ShowHiddenEntries == 0 ? 1 : 0;
    SavePrefs(0);
    UpdateMenus_ViewMisc();
    SetRescanAllTabsByLocation(LocationKind::Drawer);
    SetRescanAllTabsByLocation(LocationKind::Workbench);
    if (ActiveTab != nullptr) {
        ActiveTab->RescanTab = 0;
    }
    ReloadLocation();
}

void ChangeViewStyleOfTabs() {
    const std::int32_t& style = StylePreferenceOf(LBLocation);
    const std::int32_t before = style;
    ChangeViewStyle();
    if (style == before || Prefs.ChangeAllTabs == 0) {
        return;
    }
    const std::uint16_t marked = ActiveTab != nullptr ? ActiveTab->RescanTab : std::uint16_t(0);
    SetRescanAllTabsByLocation(LBLocation);
    GiveSettingToTabs(style);
    if (ActiveTab != nullptr) {
        ActiveTab->RescanTab = marked; // shows it already
    }
}

void RescanAllTabs() {
    if (!TabsList || currTab == nullptr) {
        return;
    }
    const std::uint32_t before = currTab->TabUserData;
    std::vector<std::uint32_t> marked;
    for (const TabsNode& node : *TabsList) {
        if (node.RescanTab != 0) {
            marked.push_back(node.TabUserData);
        }
    }
    for (const std::uint32_t tab : marked) {
        if (ClickTabNode* node = FindClickTab(tab)) {
            SwitchTabs(node, 0);
        }
    }
    if (ClickTabNode* node = FindClickTab(before); node != nullptr && node != currTab) {
        SwitchTabs(node, 0);
    }
}

} // namespace solvane
