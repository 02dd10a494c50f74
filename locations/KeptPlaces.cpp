#include "locations/KeptPlaces.h"

#include "content/Drawers.h"
#include "content/Selection.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Menus.h"
#include "interface/SpeedBars.h"
#include "interface/Tell.h"
#include "interface/Windows.h"
#include "locations/EditNode.h"
#include "locations/EnterDrawer.h"
#include "locations/NavigationList.h"
#include "locations/PlaceRouter.h"
#include "locations/RenamedVolume.h"
#include "locations/RescanTabs.h"
#include "locations/Tabs.h"
#include "locations/VirtualPlaces.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "model/Tabs.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

// In what the two kinds differ.
template <class Node>
struct KindOf;

template <>
struct KindOf<BookmarksNode> {
    static constexpr MessageNumber Refusal = MSG_CAN_NOT_BOOKMARK, DialogTitle = MSG_EDIT_BOOKMARK;
    static constexpr std::string_view Picture = "PROGDIR:Images/Img_Bookmarks.png";
    static auto& List() { return MasterBookmarksList; }
    static void SetKey(BookmarksNode& node) { node.Key = FormatText("[Bkm]%s", node.Name); }
    static void RemoveItems() { RemoveBookmarksItems(); }
    static void ShowChange() {
        SetRescanAllTabsByLocation(
            LocationKind::Bookmarks); // a tab with older copies must not give them back
        FillInBookmarksItems();
        SetMenuState();
        UpdateSpeedBar_Bookmarks();
    }
};

template <>
struct KindOf<FavoritesNode> {
    static constexpr MessageNumber Refusal = MSG_CAN_NOT_FAVORITE, DialogTitle = MSG_EDIT_FAVORITE;
    static constexpr std::string_view Picture = "PROGDIR:Images/Img_Favorites.png";
    static auto& List() { return MasterFavoritesList; }
    // The Workbench has its fixed word, as it has when the list is loaded.
    static void SetKey(FavoritesNode& node) {
        const bool isWorkbench = node.Location == LocationKind::Workbench && node.Name == "Workbench";
        node.Key = isWorkbench ? std::string("Workbench") : FormatText("[Fav]%s", node.Path);
    }
    static void RemoveItems() { RemoveFavoritesItems(); }
    static void ShowChange() {
        SetRescanAllTabsByLocation(LocationKind::Favorites); // as above
        FillInFavoritesItems();
        BuildNavigationList();
        SavePrefs(0);
        SetMenuState();
    }
};

bool CanBeKept(LocationKind location) {
    return location == LocationKind::Drawer ||
           (location >= LocationKind::Workbench && location <= LocationKind::Aminet);
}

// A place, apart from the record that may go while one gets there.
struct KeptPlace {
    LocationKind Location = LocationKind::Drawer;
    Text<128> Name;
    Text<1024> Path;
};

template <class Node>
KeptPlace PlaceOf(const Node& node) {
    return {node.Location, node.Name, node.Path};
}

KeptPlace PlaceOnShow() {
    if (LBLocation == LocationKind::Drawer) {
        CheckLastCharPath();
        return {LBLocation, NameOfPath(CurrentPath), CurrentPath};
    }
    const std::uint16_t which = LBLocation == LocationKind::OS4Depot ? WhichOS4Depot
                                : LBLocation == LocationKind::Aminet ? WhichAminet
                                                                     : std::uint16_t{0};
    const VirtualPlace* list = VirtualPlaceOf(LBLocation, which);
    const std::string_view name = list != nullptr ? SAK_LocaleString(list->Name) : std::string_view();
    return {LBLocation, name, Text<1024>(name)};
}

// Lets the user edit name and drawer, of a list of places the name alone. False when he gives it up.
template <class Node>
bool Edit(KeptPlace& place) {
    const std::string_view title = SAK_LocaleString(KindOf<Node>::DialogTitle);
    const std::string_view picture = KindOf<Node>::Picture;
    if (place.Location == LocationKind::Drawer) {
        AslReqFile = place.Name;
        AslReqDrawer = place.Path;
        if (EditNode(title, picture, SAK_LocaleString(MSG_NAME), SAK_LocaleString(MSG_DRAWER)) <= 0) {
            return false;
        }
        place.Name = AslReqFile;
        place.Path = AslReqDrawer;
        return true;
    }
    AslReqFile.Clear();
    AslReqDrawer = place.Name;
    if (EditNodeNoDrawer(title, picture, SAK_LocaleString(MSG_NAME)) <= 0) {
        return false;
    }
    place.Name = AslReqDrawer.View();
    return true;
}

template <class Node>
bool AddNode(GenericList<Node>& list, const KeptPlace& place) {
    auto node = SAK_CreateGenericListNode<Node>();
    if (!node) {
        Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
        return false;
    }
    node->Location = place.Location;
    node->Name = place.Name;
    node->Path = place.Path;
    KindOf<Node>::SetKey(*node);
    SAK_AddGenericListNode(list, std::move(node));
    return true;
}

template <class Node>
void AddCurrentLocation(AskFirst ask) {
    if (!CanBeKept(LBLocation)) {
        Tell(KindOf<Node>::Refusal);
        return;
    }
    KeptPlace place = PlaceOnShow();
    if (ask == AskFirst::Yes) {
        SetPreviewPaneNone();
        BlockMainWindow(1);
        const bool isConfirmed = Edit<Node>(place);
        BlockMainWindow(0);
        if (!isConfirmed) {
            return;
        }
    }
    KindOf<Node>::RemoveItems();
    if (AddNode(*KindOf<Node>::List(), place)) {
        KindOf<Node>::ShowChange();
    }
}

template <class Node>
void Handle(std::uint32_t index) {
    const Node* node = SAK_GetGenericListNode(*KindOf<Node>::List(), index);
    if (node == nullptr) {
        return;
    }
    const KeptPlace place = PlaceOf(*node);
    GoWhereWanted(ArgumentOfKeptPlace(place.Location, place.Name, place.Path),
                  [&place] { return GoToKeptPlace(place.Location, place.Name, place.Path); });
}

template <class Node>
bool Rename(Node& node) {
    KeptPlace place = PlaceOf(node);
    if (!Edit<Node>(place)) {
        return false;
    }
    node.Name = place.Name;
    node.Path = place.Path;
    KindOf<Node>::SetKey(node);
    return true;
}

// True when an entry was changed.
template <class Node>
bool RenameVolume(const RenamedVolume& volume) {
    const auto& list = KindOf<Node>::List();
    bool isChanged = false;
    if (!list) {
        return false;
    }
    KindOf<Node>::RemoveItems();
    for (Node& node : *list) {
        if (node.Location == LocationKind::Drawer && volume.PutIn(node.Path)) {
            volume.PutIn(node.Name);
            KindOf<Node>::SetKey(node);
            isChanged = true;
        }
    }
    KindOf<Node>::ShowChange();
    return isChanged;
}

// True when an entry was changed.
template <class Node>
bool RenameVolumeInPaths(GenericList<Node>* list, const RenamedVolume& volume) {
    bool isChanged = false;
    if (list != nullptr) {
        for (Node& node : *list) {
            isChanged = volume.PutIn(node.Path) || isChanged;
        }
    }
    return isChanged;
}

// True when a setting was changed.
bool RenameVolumeInSettings(const RenamedVolume& volume) {
    bool isChanged = false;
    if (Prefs.DefaultOpenAt == static_cast<std::int32_t>(LocationKind::Drawer)) {
        isChanged = volume.PutIn(Prefs.DefaultOpenAtPath);
        volume.PutIn(Prefs.DefaultOpenAtName);
    }
    for (Text<1024>* path : {&Prefs.DefaultExtractPath, &Prefs.DownloadPath}) {
        isChanged = volume.PutIn(*path) || isChanged;
    }
    return isChanged;
}

template <class Node>
std::vector<KeptPlace> AllPlaces() {
    std::vector<KeptPlace> places;
    for (const Node& node : *KindOf<Node>::List()) {
        places.push_back(PlaceOf(node));
    }
    return places;
}

template <class Node>
void OpenAllInTabs() {
    for (const KeptPlace& place : AllPlaces<Node>()) {
        OpenNewTabFor([&place] { return GoToKeptPlace(place.Location, place.Name, place.Path); });
    }
}

template <class Node>
void OpenAllInWindows() {
    for (const KeptPlace& place : AllPlaces<Node>()) {
        if (!OpenNewSolvaneWindow(ArgumentOfKeptPlace(place.Location, place.Name, place.Path))) {
            return; // nor would the others come
        }
    }
}

template <class Node>
bool CopyFromMaster() {
    for (const Node& kept : *KindOf<Node>::List()) {
        ContentNode* node = AddPlace(kept.Name, kept.Path, kept.Key);
        if (node == nullptr) {
            break;
        }
        node->LeadsTo = kept.Location;
        node->Selected = kept.Selected;
    }
    return true;
}

template <class Node>
void CopyToMaster() {
    auto list = SAK_CreateGenericList<Node>();
    for (const ContentNode& node : *ContentList) {
        if (!list || !AddNode(*list, {node.LeadsTo, node.EntryName, node.EntryPath})) {
            return; // what was kept stays
        }
    }
    if (list) {
        SAK_SwapGenericLists(*list, *KindOf<Node>::List());
    }
}

// What the dialogs leave is the list on show again; the master list follows it.
template <class Node>
void KeepListOnShow() {
    KindOf<Node>::RemoveItems();
    CopyToMaster<Node>();
    KindOf<Node>::ShowChange();
    SavePrefs(0);
    ReloadLocation();
}

// Each selected entry has a dialog of its own; one that is given up leaves its entry as it is.
template <class Node>
void RenameSelected() {
    if (!ContentList) {
        return;
    }
    SetPreviewPaneNone();
    SelectContentListItems();
    BlockMainWindow(1);
    bool isChanged = false;
    for (ContentNode& entry : *ContentList) {
        Node kept;
        kept.Location = entry.LeadsTo;
        kept.Name = entry.EntryName;
        kept.Path = entry.EntryPath;
        if (entry.Selected != 0 && Rename(kept)) {
            entry.EntryName = kept.Name;
            entry.EntryPath = kept.Path;
            isChanged = true;
        }
    }
    BlockMainWindow(0);
    if (isChanged) {
        KeepListOnShow<Node>();
    }
}

} // namespace

void AddCurrentLocationToBookmarks(AskFirst ask) {
    AddCurrentLocation<BookmarksNode>(ask);
}
void AddCurrentLocationToFavorites(AskFirst ask) {
    AddCurrentLocation<FavoritesNode>(ask);
}

void HandleBookmarks(std::uint32_t index) {
    Handle<BookmarksNode>(index);
}
void HandleFavorites(std::uint32_t index) {
    Handle<FavoritesNode>(index);
}
void HandleFTPSites(std::uint32_t index) {
    const FTPSitesNode* site = FTPSitesList ? SAK_GetGenericListNode(*FTPSitesList, index) : nullptr;
    if (site != nullptr) {
        HandleNavigationListBrowser(std::string(site->Key.View())); // the list may be made anew
    }
}

bool RenameBookmarks(BookmarksNode& node) {
    return Rename(node);
}
bool RenameFavorites(FavoritesNode& node) {
    return Rename(node);
}

bool RenameSelectedPlaces() {
    if (LBLocation == LocationKind::Bookmarks) {
        RenameSelected<BookmarksNode>();
    } else if (LBLocation == LocationKind::Favorites) {
        RenameSelected<FavoritesNode>();
    } else {
        return false;
    }
    return true;
}

bool RenameVolumeInKeptPlaces(const RenamedVolume& volume) {
    const bool changes[] = {RenameVolume<BookmarksNode>(volume), RenameVolume<FavoritesNode>(volume),
                            RenameVolumeInPaths(StartupTabsList.get(), volume),
                            RenameVolumeInPaths(LocationsList.get(), volume), RenameVolumeInSettings(volume)};
    return std::ranges::find(changes, true) != std::end(changes);
}

void OpenAllBookmarksInTabs() {
    OpenAllInTabs<BookmarksNode>();
}
void OpenAllBookmarksInWindows() {
    OpenAllInWindows<BookmarksNode>();
}
void OpenAllFavoritesInTabs() {
    OpenAllInTabs<FavoritesNode>();
}
void OpenAllFavoritesInWindows() {
    OpenAllInWindows<FavoritesNode>();
}

ContentNode* AddPlace(std::string_view name, std::string_view path, std::string_view key) {
    ContentNode* node = SAK_AddGenericListNode(*ContentList, SAK_CreateGenericListNode<ContentNode>());
    if (node == nullptr) {
        Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
        return nullptr;
    }
    DefaultContentNode(*node);
    node->EntryName = name;
    node->EntryPath = path;
    node->EntryDisplayName = key;
    return node;
}

bool CopyFromMasterBookmarksList() {
    return CopyFromMaster<BookmarksNode>();
}
bool CopyFromMasterFavoritesList() {
    return CopyFromMaster<FavoritesNode>();
}
void CopyToMasterBookmarksList() {
    CopyToMaster<BookmarksNode>();
}
void CopyToMasterFavoritesList() {
    CopyToMaster<FavoritesNode>();
}

} // namespace solvane
