#include "locations/DiskEvents.h"

#include "interface/MainLayout.h"
#include "locations/DeviceUsage.h"
#include "locations/Devices.h"
#include "locations/NavigationList.h"
#include "locations/NewNodes.h"
#include "locations/PlaceLists.h"
#include "locations/RescanTabs.h"
#include "locations/Tabs.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Tabs.h"
#include "platform/dos/DiskEvents.h"
#include "sak/FilenameSupport.h"

#include <memory>
#include <string_view>
#include <vector>

namespace solvane {

exec::SignalMask DiskEventSignal = 0;
Text<128> DeviceRoot;
std::uint16_t FoundRoot = 0;

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

bool LiesOn(const Text<1024>& path, std::string_view volume) {
    Text<1024> root;
    return SAK_GetDeviceRoot(path, root) && root == volume;
}

std::vector<std::uint32_t> RestingTabsOn(std::string_view volume) {
    std::vector<std::uint32_t> found;
    for (const TabsNode& tab : *TabsList) {
        const bool isResting = &tab != ActiveTab && tab.TabUserData != ExtraTab;
        if (isResting && tab.Location == LocationKind::Drawer && LiesOn(tab.Path, volume)) {
            found.push_back(tab.TabUserData);
        }
    }
    return found;
}

// Closes the tabs of a volume that has gone; the last tab stays, at the list of devices.
void CloseAllByVolumeName(std::string_view volume) {
    if (TabsList) {
        for (const std::uint32_t tab : RestingTabsOn(volume)) {
            static_cast<void>(CloseTabOf(tab));
        }
    }
    if (LBLocation != LocationKind::Drawer || !LiesOn(CurrentPath, volume)) {
        return;
    }
    if (currTab == nullptr || CloseTab() == Closing::WithWindow) {
        ShowComputer();
    }
}

// More than one disk may have left in a burst.
void CloseTabsOfLostVolumes() {
    FigureOutDiskRemoved_2();
    while (FoundRoot != 0) {
        CloseAllByVolumeName(DeviceRoot);
        FigureOutDiskRemoved_2();
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
    return true;
}

void EndDiskEvents() {
    ListenToDeviceUsage(-1);
    Watch.Mounts.reset();
    exec::FreeSignal(Watch.MountsSignal);
    exec::FreeSignal(Watch.UsageSignal);
    Watch = WatchState();
    DiskEventSignal = 0;
}

void DisksChanged() {
    BlockMainWindow(1);
    FigureOutDiskRemoved_1();
    UpdateDevicesList();
    CloseTabsOfLostVolumes();
    BuildNavigationList();
    SetRescanAllTabsComputer();
    if (LBLocation == LocationKind::Computer) {
        ShowComputer();
        if (ActiveTab != nullptr) {
            ActiveTab->RescanTab = 0; // it has just been read
        }
    }
    BlockMainWindow(0);
}

void FigureOutDiskRemoved_1() {
    if (!StartList(RemovedDevicesList) || !MasterDevicesList) {
        return;
    }
    for (const DevicesNode& device : *MasterDevicesList) {
        DevicesNode* node = AppendNode(*RemovedDevicesList);
        if (node == nullptr) {
            return;
        }
        node->Mounted = device.Mounted;
        node->DeviceName = device.DeviceName;
        node->VolumeName = device.VolumeName;
    }
}

void FigureOutDiskRemoved_2() {
    FoundRoot = 0;
    DeviceRoot.Clear();
    if (!RemovedDevicesList || !MasterDevicesList) {
        return;
    }
    for (DevicesNode& before : *RemovedDevicesList) {
        if (HasLeft(before)) {
            DeviceRoot = before.VolumeName;
            FoundRoot = 1;
            SAK_DeleteGenericListNode(*RemovedDevicesList, &before); // the next call finds the next one
            return;
        }
    }
}

} // namespace solvane
