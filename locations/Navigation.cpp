#include "locations/Navigation.h"

#include "content/Drawers.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Tell.h"
#include "locations/Assigns.h"
#include "locations/PlaceLists.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "platform/dos/Locks.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <string>

namespace solvane {

namespace {

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

void GoToTypedDrawer(const Text<1024>& typed) {
    const Text<1024> path = ByVolumeName(typed);
    if (path.Empty() || !SAK_DrawerExists(path)) {
        Tell(MSG_DRAWER_MISSING);
    } else {
        static_cast<void>(ScanDrawerOther(path));
    }
}

void GoToTypedAssign(const Text<1024>& assign) {
    const Text<1024> path = ChooseDrawerOfAssign(Text<128>(assign));
    if (path.Empty()) {
        return;
    }
    PopulateContent2(path, path);
    SetMenuState();
    SetToolbarState();
}

void GoToTyped(const Text<1024>& typed) {
    const std::string_view word = NavigationWordOf(typed);
    if (typed.View().find(':') != std::string_view::npos) {
        FindMasterAssignsNode(typed) != nullptr ? GoToTypedAssign(typed) : GoToTypedDrawer(typed);
    } else if (!word.empty()) {
        GoToPlace(word);
    } else if (!typed.Empty()) {
        SetStatusBar(SAK_LocaleString(MSG_DRAWER_MISSING), Text<128>(StatusBarBuffer2));
    }
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

bool IsListOfKeptPlaces(LocationKind location) {
    return location == LocationKind::Bookmarks || location == LocationKind::Favorites ||
           location == LocationKind::FTPSites;
}

} // namespace

void HandlePathGadget(std::string_view text) {
    if (const auto typed = TypedPath(text)) {
        GoToTyped(*typed);
    } else {
        Tell(MSG_PATH_TOO_LONG);
    }
    CheckLastCharPath();
    ShowCurrentPath(); // in place of what was typed, wherever that has led
}

namespace {

// What stands in a list of places.
void OpenKeptPlace(const ContentNode& entry) {
    const LocationKind location = entry.LeadsTo;
    const Text<128> name = entry.EntryName; // the record goes when the place is shown
    const Text<1024> path = entry.EntryPath;
    const Text<1024> key = entry.EntryDisplayName;
    if (LBLocation == LocationKind::FTPSites) {
        HandleNavigationListBrowser(key);
    } else {
        GoWhereWanted(ArgumentOfKeptPlace(location, name, path),
                      [&] { return GoToKeptPlace(location, name, path); });
    }
}

} // namespace

void OpenEntry(const ContentNode& entry) {
    if (entry.EntryName.Empty()) {
        return;
    }
    if (entry.PlaceFacts) {
        OpenPlace(entry);
        return;
    }
    if (IsListOfKeptPlaces(LBLocation)) {
        OpenKeptPlace(entry);
        return;
    }
    if (!IsDrawerKind(entry.ObjectKind) || entry.EntryName.Empty()) {
        return;
    }
    const Text<128> name = entry.EntryName; // the record goes when the new drawer is read
    const Text<1024> path = IsLinkKind(entry.ObjectKind) ? PlainPath(entry.EntryPath) : entry.EntryPath;
    GoWhereWanted(path, [&name, &path] { return PopulateContent2(name, path); });
    SetMenuState();
    SetToolbarState();
}

} // namespace solvane
