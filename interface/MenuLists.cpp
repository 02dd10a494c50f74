#include "interface/MenuLists.h"

#include "model/Devices.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "model/Tabs.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

namespace solvane {

namespace {

using intuition::MenuItem;
using intuition::MenuText;

MenuItem NamedItem(std::size_t id, std::string_view name) {
    return {.Id = static_cast<std::uint16_t>(id), .Label = std::string(name), .Text = MenuText::Name};
}

template <class Node, class NameOf>
std::vector<MenuItem> ItemsOf(const std::unique_ptr<GenericList<Node>>& list, MenuId first, NameOf nameOf,
                              std::size_t most = MostListItems) {
    std::vector<MenuItem> items;
    if (!list) {
        return items;
    }
    for (const Node& node : *list) {
        if (items.size() == most) {
            break;
        }
        items.push_back(NamedItem(first + items.size(), nameOf(node)));
    }
    return items;
}

} // namespace

std::vector<MenuItem> DeviceItems(MenuId first) {
    return ItemsOf(NavDevicesList, first, [](const DevicesNode& device) { return device.Label.View(); });
}

std::vector<MenuItem> PlaceMenuItems(const std::vector<PlaceItem>& places, MenuId first) {
    std::vector<MenuItem> items;
    for (const PlaceItem& place : places) {
        items.push_back(NamedItem(first + items.size(), place.Label.View()));
    }
    return items;
}

std::vector<MenuItem> ScriptItems() {
    return ItemsOf(ARexxList, MenuFirstScript,
                   [](const ARexxNode& script) { return script.ScriptName.View(); });
}

std::vector<MenuItem> SiteItems() {
    if (FoundFTPMount == 0) {
        return {};
    }
    return ItemsOf(FTPSitesList, MenuFirstFTPSite, [](const FTPSitesNode& site) { return site.Name.View(); });
}

std::vector<MenuItem> UserButtonItems() {
    return ItemsOf(UserButtonsList, MenuFirstUserButton,
                   [](const UserButtonsNode& button) { return button.Name.View(); });
}

std::vector<MenuItem> TabItems() {
    std::vector<MenuItem> items = ItemsOf(
        tabslist, MenuFirstTab, [](const ClickTabNode& tab) { return tab.Label.View(); }, MostTabItems + 1);
    if (!items.empty()) {
        items.resize(std::min(items.size() - 1, MostTabItems)); // the extra tab is the last one of the bar
    }
    return items;
}

} // namespace solvane
