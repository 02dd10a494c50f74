#include "interface/ContextMenus.h"

#include "interface/MainLayout.h"
#include "interface/MenuLists.h"
#include "interface/MenuTable.h"
#include "interface/Menus.h"
#include "interface/StateTable.h"
#include "model/Content.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <array>
#include <iterator>
#include <utility>

namespace solvane {

ContextMenus ContextMenuObjects;
intuition::Menu* MenuAddress = nullptr;

namespace {

using intuition::MenuItem;
using intuition::MenuMark;
using Items = std::vector<MenuItem>;

Items operator+(Items items, Items more) {
    items.insert(items.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    return items;
}

Items Strip(std::initializer_list<MenuId> ids) {
    return ItemsOfStrip(ids);
}

Items Own(MenuId id, MessageNumber text) {
    return {ItemWithText(id, SAK_LocaleString(text))};
}

// What is under it comes when the menu pops up: it depends on what is on show.
Items SortItems() {
    MenuItem head = ItemWithText(MenuSortBy, SAK_LocaleString(MSG_MENU_SORT_BY));
    head.IsHead = true;
    return {head};
}

Items Select() {
    return Strip({MenuSelectAll, MenuSelectNone, MenuToggleSelection});
}

Items SelectFiles() {
    return Select() + Strip({MenuSelectByType, MenuPattern, MenuNone});
}

Items Open() {
    return Own(MenuOpen, MSG_MENU_OPEN) + Strip({MenuOpenInTab, MenuOpenInWindow});
}

Items AddPlace() {
    Items items = Strip({MenuNone, MenuAddBookmark, MenuAddFavorite, MenuNone});
    constexpr std::array Lists = {MSG_BOOKMARKS, MSG_FAVORITES};
    for (std::size_t at = 0; at < Lists.size(); ++at) { // both say "Add current location..."
        items[at + 1].Label = std::string(SAK_LocaleString(Lists[at])) + ": " + items[at + 1].Label;
    }
    return items;
}

Items PlacesArea(MenuId organize, MenuId tabs, MenuId windows) {
    return Select() + Strip({MenuNone, organize, tabs, windows, MenuNone, MenuViewStyle, MenuReload});
}

Items ListArea() {
    return Select() + Strip({MenuNone, MenuInformation}) + AddPlace() + Strip({MenuViewStyle}) + SortItems() +
           Strip({MenuReload});
}

Items OnlineArea(MenuId recent, MenuId full) {
    return Select() + Strip({MenuPattern, MenuNone, recent, full}) + AddPlace() + Strip({MenuReload});
}

Items ResultsArea() {
    return SelectFiles() + Strip({MenuViewStyle}) + SortItems();
}

Items ContentArea() {
    return SelectFiles() + Strip({MenuPaste, MenuPasteTo, MenuNone, MenuNewDrawer}) + AddPlace() +
           Strip({MenuViewStyle}) + SortItems() +
           Strip({MenuDrawersOrder, MenuReload, MenuNone, MenuInformation});
}

Items PlaceItem() {
    return Open() + Strip({MenuNone, MenuRename, MenuDelete, MenuNone, MenuLeaveOut, MenuInformation});
}

Items ResultItem() {
    return Open() + Strip({MenuNone, MenuCut, MenuCopy, MenuPasteTo, MenuNone, MenuRename, MenuDelete,
                           MenuProtect, MenuFilenote, MenuNone, MenuArchive, MenuEdit, MenuGetHash,
                           MenuHexView, MenuNone, MenuGetVersion, MenuInformation});
}

Items ContentItem() {
    return Own(MenuOpen, MSG_MENU_OPEN) + Own(MenuExecuteSelected, MSG_MENU_EXECUTE_COMMAND) +
           Strip({MenuNone, MenuArchive, MenuNone, MenuCut, MenuCopy, MenuPaste, MenuPasteTo, MenuTabs,
                  MenuNone, MenuDelete, MenuNewDrawer, MenuRename, MenuLeaveOut, MenuPutAway, MenuNone,
                  MenuOpenInTab, MenuOpenInWindow, MenuWorkbenchWindow}) +
           Own(MenuSetBackground, MSG_MENU_SET_BACKGROUND) + Strip({MenuNone, MenuInformation});
}

// One pair: where it belongs, and what is in it.
struct Pair {
    LocationKind Location;
    ContextMenus::Object ContextMenus::*Area;
    ContextMenus::Object ContextMenus::*Row;
    Items (*AreaItems)();
    Items (*RowItems)();
};

constexpr std::array Pairs = {
    Pair{LocationKind::None, &ContextMenus::NavigationContextMenuObj, &ContextMenus::NavContextMenuObj,
         [] {
             return Strip({MenuLayout, MenuNone, MenuReload});
         },
         [] {
             return Own(MenuRowOpen, MSG_MENU_OPEN) + Own(MenuRowInTab, MSG_MENU_OPEN_IN_TAB) +
                    Own(MenuRowInWindow, MSG_MENU_OPEN_IN_WINDOW);
         }},
    Pair{LocationKind::Bookmarks, &ContextMenus::BookmarksContextMenuObj, &ContextMenus::BkmContextMenuObj,
         [] { return PlacesArea(MenuOrganizeBookmarks, MenuBookmarksInTabs, MenuBookmarksInWindows); },
         PlaceItem},
    Pair{LocationKind::Favorites, &ContextMenus::FavoritesContextMenuObj, &ContextMenus::FavContextMenuObj,
         [] { return PlacesArea(MenuOrganizeFavorites, MenuFavoritesInTabs, MenuFavoritesInWindows); },
         PlaceItem},
    Pair{LocationKind::Workbench, &ContextMenus::WorkbenchContextMenuObj, &ContextMenus::WBContextMenuObj,
         ContentArea,
         [] {
             return Open() + Strip({MenuNone, MenuCut, MenuCopy, MenuPaste, MenuPasteTo, MenuNone,
                                    MenuArchive, MenuPutAway, MenuNone, MenuGetVersion, MenuInformation});
         }},
    Pair{LocationKind::Computer, &ContextMenus::ComputerContextMenuObj, &ContextMenus::DevContextMenuObj,
         ListArea,
         [] {
             return Open() + Strip({MenuNone, MenuRelabel, MenuFormat, MenuNone, MenuToolTypes,
                                    MenuGetVersion, MenuInformation});
         }},
    Pair{LocationKind::Assigns, &ContextMenus::AssignsContextMenuObj, &ContextMenus::AssContextMenuObj,
         [] { return Select() + AddPlace() + Strip({MenuViewStyle}) + SortItems() + Strip({MenuReload}); },
         [] {
             return Open() + Strip({MenuNone, MenuWorkbenchWindow});
         }},
    Pair{LocationKind::FTPSites, &ContextMenus::FTPSitesContextMenuObj, &ContextMenus::FTPContextMenuObj,
         [] {
             return Select() + Strip({MenuNone, MenuOrganizeFTPSites, MenuNone, MenuViewStyle, MenuReload});
         },
         [] {
             return Open() + Strip({MenuNone, MenuRename, MenuDelete, MenuNone, MenuInformation});
         }},
    Pair{LocationKind::OS4Depot, &ContextMenus::OS4DepotContextMenuObj, &ContextMenus::OS4ContextMenuObj,
         [] { return OnlineArea(MenuOS4DepotRecent, MenuOS4DepotFull); },
         [] { return Own(MenuOpen, MSG_MENU_OPEN) + Strip({MenuDownload}); }},
    Pair{LocationKind::Aminet, &ContextMenus::AminetContextMenuObj, &ContextMenus::AmiContextMenuObj,
         [] { return OnlineArea(MenuAminetRecent, MenuAminetFull); },
         [] { return Own(MenuOpen, MSG_MENU_OPEN) + Strip({MenuDownload}); }},
    Pair{LocationKind::SearchResults, &ContextMenus::SearchContextMenuObj, &ContextMenus::SeaContextMenuObj,
         ResultsArea, ResultItem},
    Pair{LocationKind::DuplicateFiles, &ContextMenus::DuplicateContextMenuObj,
         &ContextMenus::DupContextMenuObj, ResultsArea, ResultItem},
    Pair{LocationKind::Archive, &ContextMenus::ArchiveContextMenuObj, &ContextMenus::ArcContextMenuObj,
         [] {
             return Select() + Strip({MenuPattern, MenuNone, MenuArchive, MenuNone, MenuViewStyle}) +
                    SortItems() + Strip({MenuReload});
         },
         [] {
             return Own(MenuOpen, MSG_MENU_OPEN) + Strip({MenuNone, MenuArchive, MenuNone, MenuDelete});
         }},
    Pair{LocationKind::Drawer, &ContextMenus::ContentContextMenuObj, &ContextMenus::ConContextMenuObj,
         ContentArea, ContentItem},
};

ContextMenus::Object MakeMenu(Items items) {
    return std::make_unique<intuition::Menu>(
        intuition::MenuSpec{.Items = std::move(items), .ImageSize = MenuImageSide()});
}

// What the menu was asked for: a row, or the area beside the rows.
intuition::Menu* MenuFor(const MenuRequest& request) {
    const bool isNavigation = request.Gadget == GadgetNavigationList;
    const LocationKind location = isNavigation ? LocationKind::None : LBLocation;
    for (const Pair& pair : Pairs) {
        if (pair.Location == location) {
            return (ContextMenuObjects.*(request.OnRow ? pair.Row : pair.Area)).get();
        }
    }
    return nullptr;
}

// The two directions, the one in force marked.
Items DirectionItems(bool isDescending) {
    Items items = Own(MenuAscending, MSG_MENU_ASCENDING) + Own(MenuDescending, MSG_MENU_DESCENDING);
    for (MenuItem& item : items) {
        item.Mark = MenuMark::Choice;
        item.Checked = (item.Id == MenuDescending) == isDescending;
    }
    return items;
}

void FillSorting(intuition::Menu& menu, const SortChoices& sorting) {
    Items items;
    for (std::size_t column = 0; column < std::min(sorting.Columns.size(), MostSortColumns); ++column) {
        if (!sorting.Columns[column].empty()) {
            items.push_back({.Id = static_cast<std::uint16_t>(MenuFirstSortColumn + column),
                             .Label = sorting.Columns[column],
                             .Mark = MenuMark::Choice,
                             .Checked = column == sorting.Column});
        }
    }
    menu.SetAttrs({.Id = MenuSortBy, .Disabled = items.empty()});
    items.push_back({});
    menu.SetItems(MenuSortBy, std::move(items) + DirectionItems(sorting.IsDescending));
}

// Each item has the state and the mark of its twin in the strip.
void SetContextMenuState(intuition::Menu& menu) {
    const auto state = PresentState();
    for (const std::uint16_t id : menu.Ids()) {
        if (id == MenuNone) {
            continue;
        }
        if (state) {
            menu.SetAttrs({.Id = id, .Disabled = !IsEnabled(static_cast<MenuId>(id), *state)});
        }
        const auto twin = MenuStripObj ? MenuStripObj->LookOf(id) : std::nullopt;
        if (twin) {
            menu.SetAttrs({.Id = id, .Checked = twin->Checked});
        }
    }
}

} // namespace

bool CreateContextMenus() {
    for (const Pair& pair : Pairs) {
        ContextMenuObjects.*pair.Area = MakeMenu(pair.AreaItems());
        ContextMenuObjects.*pair.Row = MakeMenu(pair.RowItems());
    }
    MenuAddress = nullptr;
    return true;
}

void FreeContextMenus() {
    MenuAddress = nullptr;
    ContextMenuObjects = {};
}

void ContextMenuHandlerFunc(const MenuRequest& request, const SortChoices& sorting) {
    MenuAddress = MainWindow ? MenuFor(request) : nullptr;
    if (MenuAddress == nullptr) {
        return;
    }
    SetContextMenuState(*MenuAddress);
    FillHeadLists(*MenuAddress);
    FillSorting(*MenuAddress, sorting);
    MenuAddress->PopUp(*MainWindow, request.Left, request.Top);
}

} // namespace solvane
