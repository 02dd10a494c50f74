#include "interface/MenuLists.h"

#include "interface/Images.h"
#include "interface/MenuTable.h"
#include "model/Devices.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "model/Tabs.h"

#include <algorithm>
#include <array>
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

std::vector<MenuItem> UserButtonItems() {
    return ItemsOf(UserButtonsList, MenuFirstUserButton,
                   [](const UserButtonsNode& button) { return button.Name.View(); });
}

// The first ten tabs of the bar.
std::vector<MenuItem> TabItems() {
    std::vector<MenuItem> items = ItemsOf(
        tabslist, MenuFirstTab, [](const ClickTabNode& tab) { return tab.Label.View(); }, MostTabItems + 1);
    if (!items.empty()) {
        items.resize(std::min(items.size() - 1, MostTabItems)); // the extra tab is the last one of the bar
    }
    return items;
}

struct HeadList {
    MenuId Head;
    std::vector<MenuItem> (*Items)();
};
constexpr std::array HeadLists = {
    HeadList{MenuTabs, TabItems},
    HeadList{MenuUser, UserButtonItems},
    HeadList{MenuPasteToComputer, [] { return DeviceItems(MenuPasteToDevice); }},
    HeadList{MenuPasteToFavorites, [] { return FavoriteItems(MenuPasteToFavorite); }},
    HeadList{MenuPasteToBookmarks, [] { return BookmarkItems(MenuPasteToBookmark); }},
};

} // namespace

std::vector<MenuItem> DeviceItems(MenuId first) {
    return ItemsOf(NavDevicesList, first, [](const DevicesNode& device) { return device.Label.View(); });
}

std::vector<MenuItem> BookmarkItems(MenuId first) {
    return ItemsOf(MasterBookmarksList, first, [](const BookmarksNode& place) { return place.Name.View(); });
}

std::vector<MenuItem> FavoriteItems(MenuId first) {
    return ItemsOf(MasterFavoritesList, first, [](const FavoritesNode& place) { return place.Name.View(); });
}

std::vector<MenuItem> ScriptItems() {
    std::vector<MenuItem> items =
        ItemsOf(ARexxList, MenuFirstScript, [](const ARexxNode& script) { return script.ScriptName.View(); });
    for (MenuItem& item : items) {
        item.Image = ToolImagePath("arexx", MenuImageSide());
    }
    return items;
}

std::vector<MenuItem> SiteItems() {
    if (FoundFTPMount == 0) {
        return {};
    }
    return ItemsOf(FTPSitesList, MenuFirstFTPSite, [](const FTPSitesNode& site) { return site.Name.View(); });
}

void FillHeadList(intuition::Menu& menu, MenuId head) {
    const auto found = std::ranges::find(HeadLists, head, &HeadList::Head);
    if (found == HeadLists.end() || !menu.LookOf(head)) {
        return;
    }
    const std::vector<MenuItem> items = found->Items();
    menu.SetItems(head, items);
    menu.SetAttrs({.Id = head, .Disabled = items.empty()});
}

void FillHeadLists(intuition::Menu& menu) {
    for (const HeadList& list : HeadLists) {
        FillHeadList(menu, list.Head);
    }
}

} // namespace solvane
