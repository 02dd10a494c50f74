#include "frame/MenuDispatch.h"

#include "automation/ARexxScripts.h"
#include "automation/ContentEvents.h"
#include "automation/Instances.h"
#include "automation/OpenEntries.h"
#include "automation/SelectCommands.h"
#include "content/SortLists.h"
#include "fileops/RenameFiles.h"
#include "frame/WindowSequence.h"
#include "interface/Iconify.h"
#include "interface/MainLayout.h"
#include "interface/MenuIds.h"
#include "interface/Tell.h"
#include "interface/Windows.h"
#include "locations/DiskOperations.h"
#include "locations/EnterDrawer.h"
#include "locations/KeptPlaces.h"
#include "locations/LayoutChange.h"
#include "locations/Navigation.h"
#include "locations/OpenTabs.h"
#include "locations/PlaceFigures.h"
#include "locations/Tabs.h"
#include "locations/ViewChange.h"
#include "locations/VisitHistory.h"
#include "model/Devices.h"
#include "model/LocationKind.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "online/UpdateCheck.h"
#include "platform/intuition/Events.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <iterator>

namespace solvane {

namespace {

// The command of an item whose feature is still to come.
void Waits() {
    SetStatusBar(SAK_LocaleString(MSG_COMMAND_COMES_LATER), Text<128>(StatusBarBuffer2));
}

// Several entries at once, and sites, are still to come.
void RenameSelection() {
    if (RenameSelectedPlaces() || StartInlineRename()) {
        return;
    }
    if (LBLocation == LocationKind::Drawer && NumSelected == 1) {
        RenameSelectedEntry();
    } else {
        Waits();
    }
}

void Quit() {
    ScrNotChange = CommodityInForce != 0 ? 1 : ScrNotChange; // the images go, too
    LeaveWindow();
}

void QuitAll() {
    CloseAllButThisWindow();
    Quit();
}

void AboutProgram() {
    Tell(FormatMessage(MSG_ABOUT, VERSION_STRING, DATE_STRING));
}

void CloseShownTab() {
    if (CloseTab() == Closing::WithWindow) {
        LeaveWindow();
    }
}

template <LocationKind Place>
void GoTo() {
    HandleNavigationListBrowser(WordOfLocation(Place));
}

void OpenSelection() {
    Qualifier = 0; // keys held at the last event are not meant
    OpenSelectedRows();
}

template <std::int32_t Order>
void ChooseDrawersOrder() {
    Prefs.DrawersOrder = Order;
    DrawersOrder();
}

void SortInDirection(std::int32_t direction) {
    if (const auto sort = SortOnShow(); sort && sort->Direction != direction) {
        SortBy(SameColumn);
        TellContentSelection();
    }
}

void GoToMenuRow(std::uint16_t qualifier) {
    if (Objects.Navigation == nullptr || Objects.Navigation->MenuRow() == intuition::NoRow) {
        return;
    }
    Qualifier = qualifier;
    const std::string text = Objects.Navigation->Rows()[Objects.Navigation->MenuRow()].UserData;
    if (!text.empty()) {
        HandleNavigationListBrowser(text);
    }
}

struct Command {
    MenuId Item;
    void (*Do)();
};

constexpr Command Commands[] = {
    {MenuCheckVersion, [] { CheckLatestVersion(0); }},
    {MenuLoadPrefs, [] { JumpToARexxCmd = JumpLoadPrefs; }},
    {MenuSavePrefs, [] { SavePrefs(1); }},
    {MenuIconify, [] { static_cast<void>(Iconify()); }},
    {MenuAbout, AboutProgram},
    {MenuQuit, Quit},
    {MenuQuitAll, QuitAll},

    {MenuBack, GoBackInHistory},
    {MenuForward, GoForwardInHistory},
    {MenuParent, GoToParent},
    {MenuReload, ReloadLocation},
    {MenuGoBookmarks, GoTo<LocationKind::Bookmarks>},
    {MenuGoFavorites, GoTo<LocationKind::Favorites>},
    {MenuGoWorkbench, GoTo<LocationKind::Workbench>},
    {MenuGoComputer, GoTo<LocationKind::Computer>},
    {MenuGoAssigns, GoTo<LocationKind::Assigns>},
    {MenuGoFTPSites, GoTo<LocationKind::FTPSites>},

    {MenuSelectAll, SelectAll},
    {MenuSelectNone, SelectNone},
    {MenuToggleSelection, ToggleSelection},
    {MenuPattern, [] { Pattern("", false); }},
    {MenuCut, Waits},
    {MenuCopy, Waits},
    {MenuPaste, Waits},

    {MenuExecuteCommand, Waits},
    {MenuDelete, Waits},
    {MenuNewDrawer, Waits},
    {MenuRename, RenameSelection},
    {MenuProtect, Waits},
    {MenuFilenote, Waits},
    {MenuOpenArchive, Waits},
    {MenuExtractToDefault, Waits},
    {MenuExtractHere, Waits},
    {MenuExtractArchive, Waits},
    {MenuAddToArchive, Waits},
    {MenuArchiveItem, Waits},
    {MenuArchiveSeparately, Waits},
    {MenuConvertArchive, Waits},
    {MenuTestArchive, Waits},
    {MenuEdit, Waits},
    {MenuGetDrawerSize, Waits},
    {MenuAddIcon, Waits},
    {MenuRemoveIcon, Waits},
    {MenuDownload, Waits},
    {MenuLeaveOut, Waits},
    {MenuPutAway, Waits},
    {MenuGetVersion, Waits},
    {MenuInformation, Waits},

    {MenuAddBookmark, [] { AddCurrentLocationToBookmarks(AskFirst::Yes); }},
    {MenuOrganizeBookmarks, Waits},
    {MenuBookmarksInTabs, OpenAllBookmarksInTabs},
    {MenuBookmarksInWindows, OpenAllBookmarksInWindows},
    {MenuAddFavorite, [] { AddCurrentLocationToFavorites(AskFirst::Yes); }},
    {MenuOrganizeFavorites, Waits},
    {MenuFavoritesInTabs, OpenAllFavoritesInTabs},
    {MenuFavoritesInWindows, OpenAllFavoritesInWindows},
    {MenuOrganizeFTPSites, Waits},
    {MenuOS4DepotRecent, [] { HandleNavigationListBrowser("OS4DepotRecent"); }},
    {MenuOS4DepotFull, [] { HandleNavigationListBrowser("OS4DepotFull"); }},
    {MenuAminetRecent, [] { HandleNavigationListBrowser("AminetRecent"); }},
    {MenuAminetFull, [] { HandleNavigationListBrowser("AminetFull"); }},

    {MenuTogglePreview, TurnPreviewPane},
    {MenuToggleMetadata, Waits},
    {MenuDrawersFirst, ChooseDrawersOrder<0>},
    {MenuDrawersMixed, ChooseDrawersOrder<1>},
    {MenuDrawersLast, ChooseDrawersOrder<2>},
    {MenuProcessInfo, ProcessInfoFiles},
    {MenuShowActualIcons, ShowActualIcons},
    {MenuShowThumbnail, ShowThumbnail},
    {MenuShowHidden, ToggleHiddenEntries},

    {MenuAdvancedSearch, Waits},
    {MenuSmartRename, Waits},
    {MenuDuplicates, Waits},
    {MenuGetHash, Waits},
    {MenuSetFileDate, Waits},
    {MenuHexView, Waits},
    {MenuMakeLink, Waits},
    {MenuConvertImage, Waits},
    {MenuCoverArt, Waits},
    {MenuToolTypes, Waits},
    {MenuRelabel, RelabelDisk},
    {MenuFormat, FormatDisk},
    {MenuShell, Waits},
    {MenuPreferences, Waits},

    {MenuExecuteScript, ExecuteARexxScriptSelect},

    {MenuNewTab, [] { OpenNewTab(0); }},
    {MenuCloneTab, CloneTab},
    {MenuOpenInTab, OpenSelectedInTabs},
    {MenuCloseTab, CloseShownTab},
    {MenuCloseOtherTabs, CloseAllButThisTab},
    {MenuNewWindow, [] { static_cast<void>(OpenNewSolvaneWindow("")); }},
    {MenuCloneWindow, CloneWindow},
    {MenuOpenInWindow, OpenSelectedInWindows},
    {MenuCloseOtherWindows, [] { CloseAllButThisWindow(); }},
    {MenuWorkbenchWindow, Waits},
    {MenuCascade, [] { ArrangeWindows(Arrangement::Cascade); }},
    {MenuTileVertically, [] { ArrangeWindows(Arrangement::Vertical); }},
    {MenuTileHorizontally, [] { ArrangeWindows(Arrangement::Horizontal); }},
    {MenuFourCorners, [] { ArrangeWindows(Arrangement::FourCorners); }},
    {MenuCenter, CenterWindow},
    {MenuThreeFourths,
     [] {
         SizeToPartOfScreen({3, 4});
     }},
    {MenuFiveEighths,
     [] {
         SizeToPartOfScreen({5, 8});
     }},
    {MenuOneHalf,
     [] {
         SizeToPartOfScreen({1, 2});
     }},
    {MenuFullScreen, FullScreen},

    {MenuOpen, OpenSelection},
    {MenuExecuteSelected, Waits},
    {MenuSetBackground, Waits},
    {MenuAscending, [] { SortInDirection(0); }},
    {MenuDescending, [] { SortInDirection(1); }},
    {MenuRowOpen, [] { GoToMenuRow(0); }},
    {MenuRowInTab, [] { GoToMenuRow(intuition::qualifier::Control); }},
    {MenuRowInWindow, [] { GoToMenuRow(intuition::qualifier::LeftAlt); }},
};

// Goes to a mounted device, in this tab whatever keys are held.
void GoMenu(std::uint32_t index) {
    const DevicesNode* device = NavDevicesList ? SAK_GetGenericListNode(*NavDevicesList, index) : nullptr;
    if (device != nullptr) {
        static_cast<void>(GoToPlace(Text<128>(device->Key).View()));
    }
}

void WaitsWith(std::uint32_t) {
    Waits();
}

void ChooseViewStyle(std::uint32_t style) {
    ChangeViewStyleOfTabs(static_cast<std::int32_t>(style));
}

void ChooseLayout(std::uint32_t selection) {
    ChangeLayoutOrToolbars(static_cast<std::int32_t>(selection));
}

void SortByColumn(std::uint32_t column) {
    const auto sort = SortOnShow();
    if (sort && sort->Column != static_cast<std::int32_t>(column)) { // else it would turn round
        SortBy(static_cast<std::int32_t>(column));
        TellContentSelection();
    }
}

// Items in a row of numbers: the first, how many, and what is done with the place in the row.
struct Family {
    std::uint32_t First, Count;
    void (*Do)(std::uint32_t index);
};

// In the order in which they are tried.
constexpr Family Families[] = {
    {MenuFirstDevice, MostListItems, GoMenu},
    {MenuFirstType, MostTypeItems, SelectByType},
    {MenuPasteToDevice, 3 * MostListItems, WaitsWith},
    {MenuFirstBookmark, MostListItems, HandleBookmarks},
    {MenuFirstFavorite, MostListItems, HandleFavorites},
    {MenuFirstUserButton, MostListItems, WaitsWith},
    {MenuFirstScript, MostListItems, ExecuteListedScript},
    {MenuFirstFTPSite, MostListItems, HandleFTPSites},
    {MenuFirstTab, MostTabItems, WaitsWith}, // paste to a tab
    {MenuStyleList, ViewFilmstrip + 1, ChooseViewStyle},
    {MenuLayoutBookmarks, MenuLayoutStatusBar - MenuLayoutBookmarks + 1, ChooseLayout},
    {MenuFirstSortColumn, MostSortColumns, SortByColumn},
};

const Family* FamilyOf(std::uint16_t item) {
    const auto* found = std::ranges::find_if(Families, [item](const Family& family) {
        return item >= family.First && item - family.First < family.Count;
    });
    return found != std::end(Families) ? found : nullptr;
}

const Command* CommandOf(std::uint16_t item) {
    const auto* found = std::ranges::find(Commands, item, &Command::Item);
    return found != std::end(Commands) ? found : nullptr;
}

} // namespace

void HandleMenuPick(std::uint16_t item) {
    if (const Family* family = FamilyOf(item)) {
        family->Do(item - family->First);
    } else if (const Command* command = CommandOf(item)) {
        command->Do();
    }
}

bool HasCommand(std::uint16_t item) {
    return FamilyOf(item) != nullptr || CommandOf(item) != nullptr;
}

} // namespace solvane
