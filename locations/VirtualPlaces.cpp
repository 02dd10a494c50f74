#include "locations/VirtualPlaces.h"

#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "content/EntryTexts.h"
#include "content/ListContents.h"
#include "content/SortLists.h"
#include "interface/MainLayout.h"
#include "locations/EnterDrawer.h"
#include "locations/FTPSites.h"
#include "locations/History.h"
#include "locations/KeptPlaces.h"
#include "locations/PlaceFigures.h"
#include "locations/PlaceLists.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "model/WorkingSet.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"
#include "sak/Numbers.h"

#include <algorithm>
#include <array>
#include <utility>

namespace solvane {

namespace {

bool FillSites() {
    if (!FTPSitesList) {
        return true;
    }
    for (const FTPSitesNode& site : *FTPSitesList) {
        if (ContentNode* node = AddPlace(site.Name, MountPathOf(site), site.Key)) {
            node->LeadsTo = LocationKind::FTPSites;
            node->Selected = site.Selected;
        }
    }
    return true;
}

// The online lists come with their browsers.
bool FillNothing() {
    return false;
}

constexpr std::array Lists = {
    VirtualPlace{"Bookmarks", MSG_BOOKMARKS, LocationKind::Bookmarks, 0, CopyFromMasterBookmarksList},
    VirtualPlace{"Favorites", MSG_FAVORITES, LocationKind::Favorites, 0, CopyFromMasterFavoritesList},
    VirtualPlace{"Workbench", MSG_WORKBENCH, LocationKind::Workbench, 0, UpdateWorkbenchList},
    VirtualPlace{"Computer", MSG_COMPUTER, LocationKind::Computer, 0, nullptr, ShowComputer},
    VirtualPlace{"Assigns", MSG_ASSIGNS, LocationKind::Assigns, 0, nullptr, ShowAssigns},
    VirtualPlace{"FTPSites", MSG_FTP_SITES, LocationKind::FTPSites, 0, FillSites},
    VirtualPlace{"OS4DepotRecent", MSG_OS4DEPOT_RECENT, LocationKind::OS4Depot, 0, FillNothing},
    VirtualPlace{"OS4DepotFull", MSG_OS4DEPOT_FULL, LocationKind::OS4Depot, 1, FillNothing},
    VirtualPlace{"AminetRecent", MSG_AMINET_RECENT, LocationKind::Aminet, 0, FillNothing},
    VirtualPlace{"AminetFull", MSG_AMINET_FULL, LocationKind::Aminet, 1, FillNothing},
};

const VirtualPlace* FirstList(auto fits) {
    const auto* found = std::find_if(Lists.begin(), Lists.end(), fits);
    return found != Lists.end() ? found : nullptr;
}

void TakeLocation(const VirtualPlace& place) {
    LBLocation = place.Location;
    if (place.Location == LocationKind::OS4Depot) {
        WhichOS4Depot = place.Which;
    } else if (place.Location == LocationKind::Aminet) {
        WhichAminet = place.Which;
    }
    AtFTPMount = 0;
    AtWHDLoadGamesRootDrawer = 0;
    TotalBytes = SelectedBytes = 0;
    TotalBytesBuffer = SelectedBytesBuffer = BytesToUnit(0);
    SetCurrentPath(SAK_LocaleString(place.Name));
}

bool AddVolume(const DevicesNode& device) {
    ContentNode* node = AddPlace(device.VolumeName, device.VolumeName, device.Key);
    if (node == nullptr) {
        return false;
    }
    node->DatatypeName = SAK_LocaleString(MSG_VOLUME);
    node->SortPrefix = SortPrefixOf(EntryKind::Drawer);
    node->PlaceFacts = std::make_unique<PlaceRecord>(PlaceRecord{device});
    return true;
}

// What lies on the desktop is read as any drawer is; its records name it by the path of that drawer.
void ListDesktop() {
    const Text<1024> shown = std::exchange(CurrentPath, Text<1024>(DesktopDrawer));
    for (OpenedDrawer& drawer : OpenDrawers(DesktopDrawer)) {
        ListContents(drawer);
    }
    CurrentPath = shown;
    ActiveSet.PathRead = DesktopDrawer;
}

} // namespace

const VirtualPlace* FindVirtualPlace(std::string_view name) {
    const Text<128> wanted = name;
    return FirstList([&](const VirtualPlace& list) {
        return wanted == list.Word || wanted == SAK_LocaleString(list.Name) ||
               wanted == SAK_BuiltInString(list.Name);
    });
}

const VirtualPlace* VirtualPlaceOf(LocationKind location, std::uint16_t which) {
    return FirstList(
        [&](const VirtualPlace& list) { return list.Location == location && list.Which == which; });
}

bool IsPlaceWithoutList(std::string_view word) {
    const Text<128> wanted = word;
    return wanted == "OS4Depot" || wanted == "Aminet";
}

void ShowVirtualPlace(const VirtualPlace& place, Arrival arrival) {
    if (place.Show != nullptr) {
        place.Show(arrival);
        return;
    }
    SetPreviewPaneNone();
    LeaveShownPlace(arrival);
    FreeContentList(1);
    AddShownPlace(SAK_LocaleString(place.Name), place.Word, place.Location);
    SAK_StopNotify();
    Changes = 0;
    if (place.Location == LocationKind::Workbench && Prefs.MonitorDrawer != 0) {
        SAK_ChangeNotify(DesktopDrawer);
    }
    TakeLocation(place);
    const bool hasContent = ContentList == nullptr || place.Fill();
    BuildContentList();
    TellPlace();
    if (!hasContent) {
        SetStatusBar(SAK_LocaleString(MSG_COMES_LATER), Text<128>(StatusBarBuffer2));
    }
}

bool UpdateWorkbenchList() {
    if (MasterDevicesList) {
        for (const DevicesNode& device : *MasterDevicesList) {
            if (device.Mounted != 0 && !AddVolume(device)) {
                return true;
            }
        }
    }
    ListDesktop();
    SortWorkbenchList(Prefs.WorkbenchSortDirection);
    return true;
}

} // namespace solvane
