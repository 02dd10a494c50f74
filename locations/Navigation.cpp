#include "locations/Navigation.h"

#include "content/ColumnInfo.h"
#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/Status.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "locations/Devices.h"
#include "locations/NavigationList.h"
#include "locations/PlaceLists.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

#include <array>
#include <string>

namespace solvane {

namespace {

struct Place {
    std::string_view Word;
    MessageNumber Name; // as it is shown
};

constexpr std::array Places = {
    Place{"Bookmarks", MSG_BOOKMARKS},
    Place{"Favorites", MSG_FAVORITES},
    Place{"Workbench", MSG_WORKBENCH},
    Place{"Computer", MSG_COMPUTER},
    Place{"Assigns", MSG_ASSIGNS},
    Place{"FTPSites", MSG_FTP_SITES},
    Place{"OS4DepotRecent", MSG_OS4DEPOT_RECENT},
    Place{"OS4DepotFull", MSG_OS4DEPOT_FULL},
    Place{"AminetRecent", MSG_AMINET_RECENT},
    Place{"AminetFull", MSG_AMINET_FULL},
};

constexpr std::string_view DeviceMark = "[Dev]"; // before a device's name

void ReturnToPathOnShow() {
    SetCurrentPath(Text<1024>(PathUndoBuffer));
}

void TellNoDrawer() {
    SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Information,
                    SAK_LocaleString(MSG_DRAWER_MISSING), SAK_LocaleString(MSG_CONTINUE_GAD));
}

// The path with the name of its volume in place of a device name; an assign stays as it was typed. Empty when
// there is no such device.
Text<1024> ByVolumeName(const Text<1024>& path) {
    Text<1024> root;
    Text<128> volume;
    SAK_GetDeviceRoot(path, root);
    if (FindMasterAssignsNode(root) != nullptr) {
        return path;
    }
    if (!SAK_GetNameFromLock(root, volume)) {
        return {};
    }
    const bool isVolume = volume.View().find(':') == volume.Size() - 1;
    if (!isVolume) {
        return path; // a drawer under another name, such as PROGDIR:
    }
    const std::string renamed = std::string(volume.View()).append(path.View().substr(root.Size()));
    return renamed.size() <= Text<1024>::Limit ? Text<1024>(renamed) : Text<1024>();
}

void GoToTypedDrawer() {
    const Text<1024> path = ByVolumeName(CurrentPath);
    if (path.Empty() || !SAK_DrawerExists(path)) {
        TellNoDrawer();
        ReturnToPathOnShow();
        return;
    }
    CurrentPath = path;
    if (!ScanDrawerOther()) {
        ReturnToPathOnShow();
    }
}

void GoToTypedAssign() {
    const Text<1024> assign = CurrentPath;
    PopulateContent2(assign, assign);
    SetMenuState();
    SetToolbarState();
}

// A link's target may climb ("Work:a//b"); the path on show is then the plain one of the drawer itself.
Text<1024> PlainPath(const Text<1024>& path) {
    const std::string_view text = path;
    const bool climbs =
        text.find("//") != std::string_view::npos || text.find(":/") != std::string_view::npos;
    Text<1024> plain;
    if (climbs) {
        const dos::FileLock lock = dos::Lock(text);
        if (lock && SAK_SaferNameFromLockVolumeFromDevice(lock, plain)) {
            return plain;
        }
    }
    return path;
}

bool AtPlaceList() {
    return LBLocation == LocationKind::Computer || LBLocation == LocationKind::Assigns;
}

void ServeSelection() {
    SelectContentListItems();
    if (AtPlaceList()) {
        DetailsPane4();
        SetMenuState();
        SetToolbarState();
        return;
    }
    RefreshBytes();
    DetailsPane3();
    SetMenuState();
    SetToolbarState();
}

void ServeTitleClick(std::size_t column) {
    if (column >= ColumnsInForce().size()) {
        return;
    }
    const DetailsColumn clicked = ColumnsInForce()[column];
    if (clicked == DetailsColumn::Icon) {
        Prefs.DrawersOrder = (Prefs.DrawersOrder + 1) % 3;
        DrawersOrder();
    } else {
        SortBy(static_cast<std::int32_t>(clicked));
    }
    if (AtPlaceList()) {
        DetailsPane4();
    } else {
        ShowContentStatus();
    }
}

// "[Dev]DH0:"
void GoToDevice(std::string_view key) {
    key.remove_prefix(DeviceMark.size());
    const DevicesNode* device = FindMasterDevicesNode(key);
    if (device == nullptr) {
        SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Information,
                        SAK_LocaleString(MSG_NO_DEVICE_IN_LIST), SAK_LocaleString(MSG_CONTINUE_GAD));
        return;
    }
    const Text<128> volume = device->VolumeName;
    PopulateContent2(volume, volume);
    SetMenuState();
    SetToolbarState();
}

void ServeDoubleClick(std::size_t row) {
    if (row < lblist2.size() && lblist2[row].Record != nullptr) {
        OpenEntry(*lblist2[row].Record);
    }
}

} // namespace

std::string_view NavigationWordOf(std::string_view place) {
    const Text<128> wanted = place;
    for (const Place& known : Places) {
        if (wanted == known.Word || wanted == SAK_LocaleString(known.Name) ||
            wanted == SAK_BuiltInString(known.Name)) {
            return known.Word;
        }
    }
    return {};
}

void HandleNavigationListBrowser(std::string_view word) {
    const std::string_view place = NavigationWordOf(word);
    if (place == "Computer") {
        ShowComputer();
    } else if (place == "Assigns") {
        ShowAssigns();
    } else if (word.starts_with(DeviceMark)) {
        GoToDevice(word);
    } else {
        ReturnToPathOnShow();
    }
}

void HandlePathGadget() {
    const std::string typed = dos::FromHostPath(CurrentPath);
    if (typed.size() > Text<1024>::Limit) {
        TellNoDrawer();
        ReturnToPathOnShow();
        return;
    }
    CurrentPath = typed;
    if (typed.find(':') == std::string::npos) {
        HandleNavigationListBrowser(NavigationWordOf(typed));
    } else if (FindMasterAssignsNode(CurrentPath) != nullptr) {
        GoToTypedAssign();
    } else {
        GoToTypedDrawer();
    }
}

void HandleContentListBrowser(std::string_view text) {
    if (!text.empty() || Objects.ContentList == nullptr) {
        return;
    }
    const intuition::ListEvent event = Objects.ContentList->NextEvent();
    switch (event.Kind) {
    case intuition::ListEventKind::Select:
        ServeSelection();
        break;
    case intuition::ListEventKind::DoubleClick:
        ServeDoubleClick(event.Row);
        break;
    case intuition::ListEventKind::TitleClick:
        ServeTitleClick(event.Column);
        break;
    case intuition::ListEventKind::ColumnsChanged:
        GetColumnInfoWidths();
        break;
    default:
        break;
    }
}

void OpenSelectedEntry() {
    SelectContentListItems();
    if (const ContentNode* entry = FindFirstSelectedContentNode()) {
        OpenEntry(*entry);
    }
}

void ReloadLocation() {
    if (LBLocation == LocationKind::Computer) {
        UpdateDevicesList();
        BuildNavigationList();
        ShowComputer();
    } else if (LBLocation == LocationKind::Assigns) {
        ShowAssigns();
    } else {
        static_cast<void>(ReloadDrawer());
    }
}

void OpenEntry(const ContentNode& entry) {
    if (entry.PlaceFacts) {
        OpenPlace(entry);
        return;
    }
    if (!IsDrawerKind(entry.ObjectKind) || entry.EntryName.Empty()) {
        return;
    }
    const Text<128> name = entry.EntryName; // the record goes when the new drawer is read
    const Text<1024> path = IsLinkKind(entry.ObjectKind) ? PlainPath(entry.EntryPath) : entry.EntryPath;
    PopulateContent2(name, path);
    SetMenuState();
    SetToolbarState();
}

} // namespace solvane
