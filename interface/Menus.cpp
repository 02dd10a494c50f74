#include "interface/Menus.h"

#include "interface/MainLayout.h"
#include "interface/MenuLists.h"
#include "interface/MenuState.h"
#include "interface/MenuTable.h"
#include "model/History.h"
#include "model/Prefs.h"
#include "sak/Menus.h"

#include <iterator>
#include <utility>
#include <vector>

namespace solvane {

std::unique_ptr<intuition::Menu> MenuStripObj;
std::uint16_t EntireMenuStripDone = 0;

namespace {

using intuition::MenuItem;

// Alt with one of these is a key of the program.
constexpr std::string_view LettersOfKeys = "QT";

void Mark(MenuId item, bool checked) {
    SAK_SetMenuAttrs(MenuStripObj.get(), {{.Id = item, .Checked = checked}});
}

// A head whose fixed items are followed by those of a list.
void ShowList(MenuId head, const std::vector<MenuItem>& list) {
    if (!MenuStripObj) {
        return;
    }
    std::vector<MenuItem> items = std::move(ItemsOfStrip({head}).front().Items);
    if (!list.empty() && !items.empty()) {
        items.push_back({});
    }
    items.insert(items.end(), list.begin(), list.end());
    MenuStripObj->SetItems(head, items);
}

void ShowHeadList(MenuId head) {
    if (MenuStripObj) {
        FillHeadList(*MenuStripObj, head);
    }
}

} // namespace

bool CreateMainMenuStrip() {
    MenuStripObj =
        std::make_unique<intuition::Menu>(intuition::MenuSpec{.IsStrip = true,
                                                              .Items = StripItems(),
                                                              .ImageSize = MenuImageSide(),
                                                              .NotKeys = std::string(LettersOfKeys)});
    EntireMenuStripDone = 0;
    return true;
}

void FreeMainMenuStrip() {
    MenuStripObj.reset();
    EntireMenuStripDone = 0;
}

void AttachMenuStrip() {
    if (MenuStripObj && MainWindow) {
        MenuStripObj->AttachTo(*MainWindow);
    }
}

void UpdateEntireMenuStrip() {
    FillInBookmarksItems();
    FillInFavoritesItems();
    FillInGoItemsComputer();
    FillInFTPSitesItems();
    FillInUserButtonsItems();
    FillInARexxItems();
    FillInTabItems();
    UpdateMenus_ViewMisc();
    UpdateMenus_Layout();
    UpdateMenus_History();
    EntireMenuStripDone = 1;
}

void UpdateMenus_ViewMisc() {
    Mark(MenuDrawersFirst, Prefs.DrawersOrder == 0);
    Mark(MenuDrawersMixed, Prefs.DrawersOrder == 1);
    Mark(MenuDrawersLast, Prefs.DrawersOrder == 2);
    Mark(MenuProcessInfo, Prefs.ProcessInfoFiles != 0);
    Mark(MenuShowActualIcons, Prefs.ShowActualIcons != 0);
    Mark(MenuShowThumbnail, Prefs.ShowThumbnail != 0);
    Mark(MenuShowHidden, Prefs.ShowHiddenEntries != 0);
}

void UpdateMenus_Layout() {
    for (const LayoutSwitch& each : LayoutSwitches()) {
        Mark(each.Item, each.IsOn);
    }
}

void UpdateMenus_ViewStyle(std::int32_t style) {
    for (std::int32_t each = 0; each <= ViewFilmstrip; ++each) {
        Mark(static_cast<MenuId>(MenuStyleList + each), each == style);
    }
}

void UpdateMenus_History() {
    SAK_SetMenuAttrs(MenuStripObj.get(), {{.Id = MenuBack, .Disabled = !CanGoBack()},
                                          {.Id = MenuForward, .Disabled = !CanGoForward()}});
}

void FillInARexxItems() {
    ShowList(MenuARexx, ScriptItems());
}

void FillInUserButtonsItems() {
    ShowHeadList(MenuUser);
}

void FillInTabItems() {
    ShowHeadList(MenuTabs);
}

void FillInGoItemsComputer() {
    ShowList(MenuGoComputerHead, DeviceItems(MenuFirstDevice));
    ShowHeadList(MenuPasteToComputer);
}

void RemoveBookmarksItems() {
    ShowList(MenuBookmarks, {});
}

void FillInBookmarksItems() {
    ShowList(MenuBookmarks, BookmarkItems(MenuFirstBookmark));
    ShowHeadList(MenuPasteToBookmarks);
}

void RemoveFavoritesItems() {
    ShowList(MenuFavorites, {});
}

void FillInFavoritesItems() {
    ShowList(MenuFavorites, FavoriteItems(MenuFirstFavorite));
    ShowHeadList(MenuPasteToFavorites);
}

// The sites stand between the fixed items.
void FillInFTPSitesItems() {
    if (!MenuStripObj) {
        return;
    }
    std::vector<MenuItem> items = std::move(ItemsOfStrip({MenuFTPSites}).front().Items);
    std::vector<MenuItem> sites = SiteItems();
    if (!sites.empty()) {
        sites.insert(sites.begin(), MenuItem{});
    }
    items.insert(std::next(items.begin()), std::make_move_iterator(sites.begin()),
                 std::make_move_iterator(sites.end()));
    MenuStripObj->SetItems(MenuFTPSites, items);
}

} // namespace solvane
