#include "locations/RescanTabs.h"

#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "sak/FilenameSupport.h"

#include <vector>

namespace solvane {

namespace {

template <class Predicate>
void MarkTabs(WhichTabs which, const Predicate& concerns) {
    if (!TabsList) {
        return;
    }
    BeforeSwitchTabs(1);
    for (TabsNode& node : *TabsList) {
        const bool counts = which == WhichTabs::All || &node != ActiveTab;
        if (counts && node.TabUserData != ExtraTab && concerns(node)) {
            node.RescanTab = 1;
        }
    }
}

// "Work:Games/" and "Work:Games" are one place.
Text<1024> WithoutFinalSlash(std::string_view path) {
    return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

} // namespace

void SetRescanAllTabs(WhichTabs which) {
    MarkTabs(which, [](const TabsNode& node) {
        return node.Location == LocationKind::Drawer ||
               (node.Location >= LocationKind::Bookmarks && node.Location <= LocationKind::Computer);
    });
}

void SetRescanAllTabsByLocation(LocationKind location, WhichTabs which) {
    const bool handled = (location >= LocationKind::Bookmarks && location <= LocationKind::FTPSites) ||
                         location == LocationKind::Archive || location == LocationKind::Drawer;
    if (handled) {
        MarkTabs(which, [location](const TabsNode& node) { return node.Location == location; });
    }
}

void SetRescanAllTabsByPath(std::string_view path, std::uint32_t tabNumber) {
    const Text<1024> wanted = WithoutFinalSlash(path);
    MarkTabs(WhichTabs::All, [&wanted, tabNumber](const TabsNode& node) {
        return node.TabNumber != tabNumber && WithoutFinalSlash(node.Path) == wanted;
    });
}

void SetRescanAllTabsComputer(WhichTabs which) {
    SetRescanAllTabsByLocation(LocationKind::Computer, which);
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
