#include "locations/DiskEvents.h"

#include "interface/MainLayout.h"
#include "locations/Assigns.h"
#include "locations/DeviceUsage.h"
#include "locations/Devices.h"
#include "locations/EnterDrawer.h"
#include "locations/KeptPlaces.h"
#include "locations/NavigationList.h"
#include "locations/NewNodes.h"
#include "locations/PlaceLists.h"
#include "locations/PlaceRouter.h"
#include "locations/RenamedVolume.h"
#include "locations/RescanTabs.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Tabs.h"
#include "platform/dos/DiskEvents.h"
#include "platform/dos/Volumes.h"
#include "sak/FilenameSupport.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace solvane {

exec::SignalMask DiskEventSignal = 0;

namespace {

struct WatchState {
    std::unique_ptr<dos::DiskNotification> Mounts;
    int MountsSignal = -1, UsageSignal = -1;
};
WatchState Watch;

// The first device of the new list that has that name; null: none.
const DevicesNode* PresentDevice(const Text<128>& name) {
    for (const DevicesNode& device : *MasterDevicesList) {
        if (device.DeviceName == name) {
            return &device;
        }
    }
    return nullptr;
}

bool HasLeft(const DevicesNode& before) {
    if (before.Mounted == 0) {
        return false;
    }
    const DevicesNode* now = PresentDevice(before.DeviceName);
    return now == nullptr || now->VolumeName != before.VolumeName;
}

// By the name of its volume or of its device; an assign of that name leads elsewhere.
bool LiesOn(const RemovedVolume& removed, const Text<1024>& path) {
    Text<1024> root;
    return SAK_GetDeviceRoot(path, root) &&
           (root == removed.Device || (root == removed.Volume && !IsAssignNow(root)));
}

std::vector<std::uint32_t> RestingTabsOn(const RemovedVolume& removed) {
    std::vector<std::uint32_t> found;
    for (const TabsNode& tab : *TabsList) {
        const bool isResting = &tab != ActiveTab && tab.TabUserData != ExtraTab;
        if (isResting && tab.Location == LocationKind::Drawer && LiesOn(removed, tab.Path)) {
            found.push_back(tab.TabUserData);
        }
    }
    return found;
}

// Closes the tabs of the volumes that have gone, more than one in a burst. The active tab is the last: none
// that comes on show instead lies on one of them. The last tab of all stays, at the list of devices.
void CloseTabsOfLostVolumes() {
    const std::vector<RemovedVolume> lost = FigureOutDiskRemoved_2();
    if (TabsList) {
        for (const RemovedVolume& removed : lost) {
            for (const std::uint32_t tab : RestingTabsOn(removed)) {
                static_cast<void>(CloseTabOf(tab));
            }
        }
    }
    const auto isLost = [](const RemovedVolume& removed) { return LiesOn(removed, CurrentPath); };
    if (LBLocation != LocationKind::Drawer || std::ranges::none_of(lost, isLost)) {
        return;
    }
    if (currTab == nullptr || CloseTab() == Closing::WithWindow) {
        ShowComputer(Arrival::New);
    }
}

bool IsNoted(const DevicesNode& device) {
    return std::any_of(RemovedDevicesList->begin(), RemovedDevicesList->end(), [&](const DevicesNode& noted) {
        return noted.DeviceName == device.DeviceName && noted.VolumeName == device.VolumeName;
    });
}

// What is there now is what the next disk event compares with, however often the lists are read until then.
void NoteDevicesAnew() {
    RemovedDevicesList.reset();
    FigureOutDiskRemoved_1();
}

// The lists that show devices; that on show is read at once.
void ShowDevicesAnew() {
    BuildNavigationList();
    SetRescanAllTabsComputer(WhichTabs::Others);
    SetRescanAllTabsByLocation(LocationKind::Workbench, WhichTabs::Others);
    if (LBLocation == LocationKind::Computer) {
        ShowComputer(Arrival::New);
    } else if (LBLocation == LocationKind::Workbench) {
        ReloadLocation();
    }
}

// What names a volume here follows the name that another process has given it; written it is with the other
// preferences, as that process may be a window that has just done so. True when there was one.
bool FollowNewNames() {
    const std::vector<dos::VolumeRename> renames = dos::TakeNewNames();
    for (const dos::VolumeRename& rename : renames) {
        const std::string before = rename.Before + ":", now = rename.Now + ":";
        static_cast<void>(FollowNewName({.Before = before, .Now = now}));
    }
    return !renames.empty();
}

// The place on show, where it may name a volume.
void ShowNewNames() {
    if (LBLocation == LocationKind::Drawer) {
        SetCurrentPath(Text<1024>(CurrentPath));
    }
    const LocationKind naming[] = {LocationKind::Drawer, LocationKind::Bookmarks, LocationKind::Favorites,
                                   LocationKind::Assigns};
    if (std::ranges::find(naming, LBLocation) != std::end(naming)) {
        ReloadLocation();
        if (ActiveTab != nullptr) {
            ActiveTab->RescanTab = 0;
        }
    }
}

} // namespace

bool StartDiskEvents() {
    EndDiskEvents();
    Watch.MountsSignal = exec::AllocSignal();
    Watch.UsageSignal = exec::AllocSignal();
    Watch.Mounts = std::make_unique<dos::DiskNotification>();
    if (Watch.MountsSignal < 0 || Watch.UsageSignal < 0 ||
        !Watch.Mounts->Start(exec::FindTask(), Watch.MountsSignal)) {
        EndDiskEvents();
        return false;
    }
    DiskEventSignal = exec::SignalMask{1} << Watch.MountsSignal;
    ListenToDeviceUsage(Watch.UsageSignal);
    NoteDevicesAnew();
    return true;
}

void EndDiskEvents() {
    ListenToDeviceUsage(-1);
    Watch.Mounts.reset();
    exec::FreeSignal(Watch.MountsSignal);
    exec::FreeSignal(Watch.UsageSignal);
    Watch = WatchState();
    RemovedDevicesList.reset();
    DiskEventSignal = 0;
}

void DisksChanged() {
    BlockMainWindow(1);
    const bool isRenamed = FollowNewNames();
    FigureOutDiskRemoved_1();
    UpdateDevicesList();
    CloseTabsOfLostVolumes();
    NoteDevicesAnew();
    ShowDevicesAnew();
    if (isRenamed) {
        ShowNewNames();
    }
    BlockMainWindow(0);
}

bool FollowNewName(const RenamedVolume& volume) {
    for (GenericList<DevicesNode>* list : {RemovedDevicesList.get(), MasterDevicesList.get()}) {
        if (list != nullptr) {
            for (DevicesNode& device : *list) {
                volume.PutIn(device.VolumeName);
            }
        }
    }
    RenameVolumeInTabs(volume);
    SetRescanAllTabsByLocation(LocationKind::Assigns, WhichTabs::Others);
    return RenameVolumeInKeptPlaces(volume);
}

void FigureOutDiskRemoved_1() {
    if (!MasterDevicesList || (!RemovedDevicesList && !StartList(RemovedDevicesList))) {
        return;
    }
    for (const DevicesNode& device : *MasterDevicesList) {
        if (IsNoted(device)) {
            continue;
        }
        DevicesNode* node = AppendNode(*RemovedDevicesList);
        if (node == nullptr) {
            return;
        }
        node->Mounted = device.Mounted;
        node->DeviceName = device.DeviceName;
        node->VolumeName = device.VolumeName;
    }
}

std::vector<RemovedVolume> FigureOutDiskRemoved_2() {
    std::vector<RemovedVolume> found;
    if (RemovedDevicesList && MasterDevicesList) {
        for (const DevicesNode& before : *RemovedDevicesList) {
            if (HasLeft(before)) {
                found.push_back({before.VolumeName, before.DeviceName});
            }
        }
    }
    return found;
}

} // namespace solvane
