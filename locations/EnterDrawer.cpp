#include "locations/EnterDrawer.h"

#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "content/Status.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/TabBar.h"
#include "interface/Tell.h"
#include "locations/DeviceUsage.h"
#include "locations/Devices.h"
#include "locations/History.h"
#include "locations/PlaceRouter.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/Tabs.h"
#include "platform/dos/HostPaths.h"
#include "platform/dos/Locks.h"
#include "sak/FilenameSupport.h"
#include "sak/Messages.h"

#include <algorithm>
#include <string>

namespace solvane {

namespace {

// A path as SetCurrentPath may take it. Empty, after a requester, when it does not fit.
Text<1024> FittingPath(std::string_view path) {
    if (path.empty() || path == PathTooLong || path.size() > Text<1024>::Limit) {
        Tell(path.empty() ? MSG_DRAWER_MISSING : MSG_PATH_TOO_LONG);
        return {};
    }
    return path;
}

// The drawer that an assign stands for. Empty when that cannot be found out.
Text<1024> GetFullPathForAssign(std::string_view assign) {
    Text<1024> full;
    const dos::FileLock lock = dos::Lock(assign);
    if (!lock || !SAK_SaferNameFromLockVolumeFromDevice(lock, full)) {
        full.Clear();
    }
    return full;
}

bool IsKnownRoot(std::string_view root) {
    if (FindMasterDevicesNode(root) != nullptr || FindMasterAssignsNode(root) != nullptr) {
        return true;
    }
    const Text<128> name(root);
    if (name == "APPDIR:" || name == "ENV:") {
        return true;
    }
    // The disk may have come since the list was made.
    return GetDevices() && CopyDevicesToNavDevices() && FindMasterDevicesNode(root) != nullptr;
}

// Scans the drawer at path; on failure the path that was on show comes back.
bool ShowDrawer(std::string_view path) {
    const Text<1024> before = PathUndoBuffer;
    SetCurrentPath(path);
    if (ScanDrawer()) {
        return true;
    }
    SetCurrentPath(before);
    return false;
}

} // namespace

Text<128> NameOfPath(std::string_view path) {
    if (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    Text<1024> drawer;
    Text<128> name;
    SAK_SplitFilename(path, drawer, name);
    return name.Empty() ? Text<128>(path) : name;
}

std::optional<Text<1024>> TypedPath(std::string_view typed) {
    std::string path = dos::FromHostPath(typed);
    const bool climbs = path.ends_with("//") || path.ends_with(":/"); // to the parent
    if (path.ends_with('/') && !climbs) {
        path.pop_back();
    }
    return path.size() <= Text<1024>::Limit ? std::optional(Text<1024>(path)) : std::nullopt;
}

void SetCurrentPath(std::string_view path) {
    CurrentPath = path;
    PathUndoBuffer = CurrentPath;
    if (ActiveTab != nullptr) {
        ActiveTab->Path = CurrentPath;
    }
    SetTabLabel(NameOfPath(CurrentPath), CurrentPath);
    ShowCurrentPath();
}

void TellEnteredPlace() {
    if (DevicesNode* device = DeviceOfPlace()) {
        GetDeviceUsage(*device);
    }
    DetailsPane1();
}

bool PopulateContent2(std::string_view name, std::string_view path) {
    Text<1024> target = FittingPath(path);
    const Text<128> called = name;
    BeforeSwitchHistory();
    if (Prefs.ShowFullPathForAssigns != 0 && FindMasterAssignsNode(target) != nullptr) {
        target = FittingPath(GetFullPathForAssign(target));
    }
    CheckLastCharPathOther(target);
    if (target.Empty() || !ShowDrawer(target)) {
        return false;
    }
    AddShownPlace(called, target, LocationKind::Drawer);
    TellEnteredPlace();
    ShowContentStatus();
    return true;
}

bool ScanDrawerOther(std::string_view given) {
    Text<1024> path = given;
    CheckLastCharPathOther(path);
    if (SAK_IsDeviceRoot(path) && !IsKnownRoot(path)) {
        Tell(MSG_NO_DEVICE_IN_LIST);
        return false;
    }
    BeforeSwitchHistory();
    if (!ShowDrawer(path)) {
        return false;
    }
    TellEnteredPlace();
    ShowEnteredPathStatus();
    CheckLastCharPath();
    AddShownPlace(NameOfPath(CurrentPath), CurrentPath, LocationKind::Drawer);
    SetMenuState();
    SetToolbarState();
    return true;
}

void GoToParent() {
    CheckLastCharPath();
    if (LBLocation != LocationKind::Drawer) {
        return;
    }
    if (SAK_IsDeviceRoot(CurrentPath)) {
        GoToPlace(FindMasterAssignsNode(CurrentPath) != nullptr ? "Assigns" : "Computer");
        return;
    }
    Text<1024> path = CurrentPath;
    Text<1024> parent;
    SAK_GetParent(path, parent);
    BeforeSwitchHistory();
    if (parent.Empty() || !ShowDrawer(parent)) {
        return;
    }
    HistorySelected = std::min(HistorySelected, 0); // what lay ahead comes to lie behind
    AddShownPlace(NameOfPath(parent), parent, LocationKind::Drawer);
    TellEnteredPlace();
    ShowContentStatus();
    SetMenuState();
    SetToolbarState();
}

} // namespace solvane
