#include "locations/Devices.h"

#include "content/Drawers.h"
#include "interface/Tell.h"
#include "locations/Assigns.h"
#include "locations/DeviceUsage.h"
#include "locations/IdentifyDevice.h"
#include "locations/NavigationList.h"
#include "locations/NewNodes.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "platform/dos/Volumes.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/SortGenericLists.h"

#include <string>
#include <string_view>

namespace solvane {

namespace {

constexpr std::string_view FTPMountVolume = "FTPMount:"; // has a section of its own

std::string WithColon(std::string_view name) {
    return std::string(name).append(":");
}

// The names of a device in the form that the user has chosen.
std::string LabelOf(const DevicesNode& device) {
    switch (Prefs.ShowVolumeLabelAs) {
    case 1:
        return std::string(device.VolumeName.View());
    case 2:
        return FormatText("%s (%s)", device.DeviceName, device.VolumeName);
    case 3:
        return std::string(device.DeviceName.View());
    default:
        return FormatText("%s (%s)", device.VolumeName, device.DeviceName);
    }
}

void SetDevice(DevicesNode& device, const dos::VolumeInfo& volume) {
    device.DeviceName = WithColon(volume.Device);
    device.Key = FormatText("[Dev]%s", device.DeviceName);
    device.DeviceDriver = volume.ExecDevice;
    device.Unit = volume.Unit;
    device.HandlerName = volume.HandlerName;
}

void SetVolume(DevicesNode& device, const dos::VolumeInfo& volume) {
    SetDevice(device, volume);
    device.Mounted = 1;
    device.VolumeName = WithColon(volume.Volume);
    device.Label = LabelOf(device);
    device.ShareName = volume.MountSource;
    device.WriteProtected = volume.WriteProtected ? 1 : 0;
    device.DosType = volume.DosType != 0 ? dos::DosTypeText(volume.DosType) : std::string();
    device.FileSystem = volume.FileSystem;
    device.MayHang = volume.MayHang ? 1 : 0;
    device.MediumBlocks = volume.MediumBlocks;
    device.MediumBlockSize = volume.MediumBlockSize;
    IdentifyDevice(device);
    if (device.Type != DeviceNetworkShare) {
        device.ShareName.Clear();
    }
}

} // namespace

void TellNoListNode() {
    Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
}

bool GetDevices() {
    if (!StartList(MasterDevicesList)) {
        return false;
    }
    const WithoutRequesters quiet;
    for (const dos::VolumeInfo& volume : dos::Volumes()) {
        if (Text<128>(WithColon(volume.Volume)) == FTPMountVolume) {
            continue;
        }
        DevicesNode* node = AppendNode(*MasterDevicesList);
        if (node == nullptr) {
            return false;
        }
        SetVolume(*node, volume);
    }
    GetAllDeviceUsage();
    if (Prefs.ShowEmptyDevices != 0 && !GetEmptyDevices()) {
        return false;
    }
    SortMasterDevicesList();
    return true;
}

bool GetEmptyDevices() {
    for (const dos::VolumeInfo& drive : dos::EmptyDrives()) {
        DevicesNode* node = AppendNode(*MasterDevicesList);
        if (node == nullptr) {
            return false;
        }
        SetDevice(*node, drive);
        node->VolumeName = node->DeviceName;
        node->DosType = "DOS\\00";
        node->Label = FormatText("%s   %s", node->DeviceName, SAK_LocaleString(MSG_NO_MEDIA));
        node->DetailText1 = node->DeviceName;
        node->DetailText2 = SAK_LocaleString(MSG_NO_MEDIA);
        IdentifyDevice(*node);
    }
    return true;
}

void SortMasterDevicesList() {
    if (!MasterDevicesList) {
        return;
    }
    if (Prefs.SortDevices == 0) {
        SAK_SortGenericList(*MasterDevicesList, SortOrder::Ascending, ByText(&DevicesNode::DeviceName));
    } else {
        SAK_SortGenericList(*MasterDevicesList, SortOrder::Ascending, ByText(&DevicesNode::VolumeName));
    }
}

bool CopyDevicesToNavDevices() {
    if (!MasterDevicesList || !StartList(NavDevicesList)) {
        return false;
    }
    for (const DevicesNode& device : *MasterDevicesList) {
        if (device.Mounted == 0) {
            continue;
        }
        DevicesNode* node = AppendNode(*NavDevicesList);
        if (node == nullptr) {
            return false;
        }
        node->Mounted = device.Mounted;
        node->DeviceName = device.DeviceName;
        node->VolumeName = device.VolumeName;
        node->Label = device.Label;
        node->Key = device.Key;
        node->Type = device.Type;
        node->MayHang = device.MayHang;
    }
    return true;
}

Text<128> RootOfDevice(const DevicesNode& device) {
    const DevicesNode* first = FindMasterDevicesNode(device.VolumeName);
    const bool isFound = first != nullptr && first->DeviceName == device.DeviceName;
    return isFound && !IsAssignNow(device.VolumeName) ? device.VolumeName : device.DeviceName;
}

void UpdateDevicesList() {
    FreeNavigationList();
    if (LBLocation == LocationKind::Computer) {
        FreeContentList(1);
    }
    static_cast<void>(GetDevices() && CopyDevicesToNavDevices()); // on failure what there is is shown
}

} // namespace solvane
