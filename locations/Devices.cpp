#include "locations/Devices.h"

#include "interface/MainLayout.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "platform/dos/Volumes.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"
#include "sak/SortGenericLists.h"

#include <string>
#include <string_view>

namespace solvane {

namespace {

// An empty list, whether or not there was one.
template <class Node>
bool StartList(std::unique_ptr<GenericList<Node>>& list) {
    if (!list) {
        list = SAK_CreateGenericList<Node>();
    }
    if (list) {
        SAK_ClearGenericList(*list);
    }
    return list != nullptr;
}

// A new record at the end of the list; null after a requester.
template <class Node>
Node* AppendNode(GenericList<Node>& list) {
    Node* node = SAK_AddGenericListNode(list, SAK_CreateGenericListNode<Node>());
    if (node == nullptr) {
        SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Error,
                        SAK_LocaleString(MSG_NO_LIST_NODE), SAK_LocaleString(MSG_CONTINUE_GAD));
    }
    return node;
}

std::string WithColon(std::string_view name) {
    return std::string(name).append(":");
}

} // namespace

bool GetDevices() {
    if (!StartList(MasterDevicesList)) {
        return false;
    }
    const WithoutRequesters quiet;
    for (const dos::VolumeInfo& volume : dos::Volumes()) {
        DevicesNode* node = AppendNode(*MasterDevicesList);
        if (node == nullptr) {
            return false;
        }
        node->Mounted = 1;
        node->DeviceName = WithColon(volume.Device);
        node->VolumeName = WithColon(volume.Volume);
    }
    SortMasterDevicesList();
    return true;
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
        *node = device;
    }
    return true;
}

bool GetAssigns() {
    if (!StartList(MasterAssignsList)) {
        return false;
    }
    for (const dos::AssignInfo& assign : dos::Assigns()) {
        AssignsNode* node = AppendNode(*MasterAssignsList);
        if (node == nullptr) {
            return false;
        }
        node->Name = WithColon(assign.Name);
        node->MultiAssign = assign.Targets.size() > 1 ? 1 : 0;
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

void SortMasterAssignsList() {
    if (MasterAssignsList) {
        SAK_SortGenericList(*MasterAssignsList, SortOrder::Ascending, ByText(&AssignsNode::Name));
    }
}

} // namespace solvane
