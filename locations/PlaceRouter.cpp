#include "locations/PlaceRouter.h"

#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "content/Selection.h"
#include "content/Status.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/NavigationPane.h"
#include "interface/Tell.h"
#include "interface/Windows.h"
#include "locations/Devices.h"
#include "locations/EnterDrawer.h"
#include "locations/FTPSites.h"
#include "locations/KeptPlaces.h"
#include "locations/Navigation.h"
#include "locations/NavigationList.h"
#include "locations/PlaceFigures.h"
#include "locations/Tabs.h"
#include "locations/VirtualPlaces.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/intuition/Events.h"
#include "platform/utility/Text.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

namespace solvane {

namespace {

using intuition::TreeEvent;
using intuition::TreeEventKind;

constexpr std::string_view FavoriteMark = "[Fav]", DeviceMark = "[Dev]", SiteMark = "[FTP]";

// Whether the keys that are held choose where a place opens.
enum class Keys { Count, Ignored };

bool Refuse(MessageNumber text) {
    Tell(text);
    return false;
}

bool Go(Keys keys, std::string_view argument, const std::function<bool()>& arrive) {
    return keys == Keys::Count ? GoWhereWanted(argument, arrive) : arrive();
}

bool GoToDrawer(std::string_view name, std::string_view path) {
    if (!PopulateContent2(name, path)) {
        return false;
    }
    SetMenuState();
    SetToolbarState();
    return true;
}

bool ShowDevice(std::string_view name) {
    const DevicesNode* device = FindMasterDevicesNode(name); // a new tab may have had the list read anew
    if (device == nullptr) {
        return Refuse(MSG_NO_DEVICE_IN_LIST);
    }
    const std::uint32_t type = device->Type;
    const Text<128> root = RootOfDevice(*device);
    if (!GoToDrawer(root, root)) {
        return false;
    }
    if (type == DeviceCompactFlash || type == DeviceDropbox || type == DeviceNetworkShare) {
        RefreshBytes();
        ShowContentStatus();
    }
    return true;
}

bool GoToDevice(std::string_view name, Keys keys) {
    const DevicesNode* device = FindMasterDevicesNode(name);
    return device != nullptr ? Go(keys, RootOfDevice(*device), [name] { return ShowDevice(name); })
                             : Refuse(MSG_NO_DEVICE_IN_LIST);
}

bool GoToFavorite(std::string_view path, Keys keys) {
    const FavoritesNode* found = FindMasterFavoritesNode(path);
    if (found == nullptr) {
        return Refuse(MSG_NO_FAVORITE_IN_LIST);
    }
    const LocationKind location = found->Location;
    const Text<128> name = found->Name;
    const Text<1024> target = found->Path;
    return Go(keys, ArgumentOfKeptPlace(location, name, target),
              [&] { return GoToKeptPlace(location, name, target); });
}

bool GoToSite(std::string_view name, Keys keys) {
    const FTPSitesNode* site = FindNavFTPSitesNode(name);
    if (site == nullptr) {
        return Refuse(MSG_NO_FTP_SITE_IN_LIST);
    }
    if (!CanReachSites()) { // before a tab or window is opened for nothing
        return false;
    }
    const Text<128> called = site->Name;
    const Text<1024> path = MountPathOf(*site);
    return Go(keys, path, [&called, &path] {
        FTPMountSiteName = called;
        if (!GoToDrawer(called, path)) {
            return false;
        }
        RefreshBytes();
        return true;
    });
}

// What stands behind the mark at the head of a text; false without it.
bool TakeMark(std::string_view text, std::string_view mark, std::string_view& rest) {
    if (utility::Strnicmp(text, mark, mark.size()) != 0 || text.size() < mark.size()) {
        return false;
    }
    rest = text.substr(mark.size());
    return true;
}

bool Route(std::string_view text, Keys keys, Arrival arrival = Arrival::New) {
    std::string_view rest;
    if (TakeMark(text, FavoriteMark, rest)) {
        return GoToFavorite(rest, keys);
    }
    if (TakeMark(text, DeviceMark, rest)) {
        return GoToDevice(rest, keys);
    }
    if (TakeMark(text, SiteMark, rest)) {
        return GoToSite(rest, keys);
    }
    if (IsPlaceWithoutList(text)) {
        return true; // these stand for two lists each; nothing tells which is meant
    }
    const VirtualPlace* place = FindVirtualPlace(text);
    if (place == nullptr) {
        Tell(FormatText("%s\n\n%s", SAK_LocaleString(MSG_UNKNOWN_PLACE), text));
        return false;
    }
    return Go(keys, place->Word, [place, arrival] {
        ShowVirtualPlace(*place, arrival);
        return true;
    });
}

// A section that was closed or opened stays so.
void NoteSection(std::string_view head, TreeEventKind kind) {
    if (kind != TreeEventKind::Close && kind != TreeEventKind::Open) {
        return;
    }
    const std::int16_t hidden = kind == TreeEventKind::Close ? 1 : 0;
    if (head == "Favorites") {
        Prefs.FavoritesHidden = hidden;
    } else if (head == "Computer") {
        Prefs.ComputerHidden = hidden;
    } else if (head == "FTPSites") {
        Prefs.FTPSitesHidden = hidden;
    }
    SavePrefs(0);
}

void ServePaneEvent() {
    if (Objects.Navigation == nullptr) {
        return;
    }
    const TreeEvent event = Objects.Navigation->NextEvent();
    if (event.Row >= Objects.Navigation->Rows().size()) {
        return;
    }
    const std::string text = Objects.Navigation->Rows()[event.Row].UserData; // the rows may be made anew
    if (text == "[blank]") {
        SelectOldRow();
        return;
    }
    NoteSection(text, event.Kind);
    const bool elsewhere = IsHeld(intuition::qualifier::AnyAlt);
    if (!Route(text, Keys::Count) || elsewhere) {
        SelectOldRow();
    }
}

} // namespace

std::string_view NavigationWordOf(std::string_view place) {
    const VirtualPlace* found = FindVirtualPlace(place);
    return found != nullptr ? found->Word : std::string_view();
}

std::string_view WordOfPlace(LocationKind location, std::string_view name) {
    const VirtualPlace* recent = VirtualPlaceOf(location, 0);
    const VirtualPlace* full = VirtualPlaceOf(location, 1);
    if (full != nullptr && FindVirtualPlace(name) != recent) {
        return full->Word;
    }
    return recent != nullptr ? recent->Word : std::string_view();
}

namespace {

// The path of an entry keeps telling which list is meant when the user has given it another name.
std::string_view WordOfKeptPlace(LocationKind location, std::string_view name, std::string_view path) {
    return WordOfPlace(location, FindVirtualPlace(path) != nullptr ? path : name);
}

} // namespace

bool CanReachSites() {
    return FoundFTPMount != 0 || Refuse(MSG_COMES_LATER);
}

bool GoWhereWanted(std::string_view argument, const std::function<bool()>& arrive) {
    if (IsHeld(intuition::qualifier::AnyAlt)) {
        return OpenWantedWindow(argument);
    }
    return IsHeld(intuition::qualifier::Control) ? OpenNewTabFor(arrive) : arrive();
}

void HandleNavigationListBrowser(std::string_view text) {
    if (text.empty()) {
        ServePaneEvent();
    } else if (text != "[blank]") {
        Route(text, Keys::Count);
    }
}

bool GoToPlace(std::string_view text, Arrival arrival) {
    return Route(text, Keys::Ignored, arrival);
}

bool GoToKeptPlace(LocationKind location, std::string_view name, std::string_view path) {
    const std::string_view word = WordOfKeptPlace(location, name, path);
    if (!word.empty()) {
        return GoToPlace(word);
    }
    SetPreviewPaneNone();
    return GoToDrawer(name, path);
}

std::string ArgumentOfKeptPlace(LocationKind location, std::string_view name, std::string_view path) {
    const std::string_view word = WordOfKeptPlace(location, name, path);
    return std::string(word.empty() ? path : word);
}

void ReloadLocation() {
    const std::string_view word = WordOfPlace(LBLocation, {});
    const bool isOnline = LBLocation == LocationKind::OS4Depot || LBLocation == LocationKind::Aminet;
    if (word.empty() || isOnline) {
        ReloadDrawer();
        return;
    }
    BlockMainWindow(1);
    NoteTopRow();
    const KeptSelection selection = NoteSelection();
    if (LBLocation == LocationKind::Computer) {
        UpdateDevicesList();
        BuildNavigationList();
    }
    GoToPlace(word, Arrival::Again);
    if (!selection.Entries.empty()) {
        RestoreSelection(selection);
        SelectContentListItems();
        TellContentSelection();
    }
    BlockMainWindow(0);
}

} // namespace solvane
