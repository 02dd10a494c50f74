#include "model/Content.h"
#include "model/ContentNode.h"
#include "model/Devices.h"
#include "model/PrefsLists.h"

#include <string>

namespace solvane {

namespace {

constexpr std::string_view FTPMountRoot = "FTPMount:";

bool FitsKind(EntryKind own, std::uint32_t wanted) {
    return wanted == AnyKind || IsDrawerKind(own) == IsDrawerKind(static_cast<EntryKind>(wanted));
}

} // namespace

ContentNode* FindContentNode(std::string_view name, std::uint32_t kind) {
    if (!ContentList) {
        return nullptr;
    }
    return FindNodeByText(*ContentList, &ContentNode::EntryName, name,
                          [kind](const ContentNode& node) { return FitsKind(node.ObjectKind, kind); });
}

ContentNode* FindFirstSelectedContentNode() {
    return ContentList ? FindFirstSelected(*ContentList) : nullptr;
}

ContentNode* FindFirstSelectedFileContentNode() {
    if (!ContentList) {
        return nullptr;
    }
    return FindNode(*ContentList, [](const ContentNode& node) {
        return node.Selected != 0 && !IsDrawerKind(node.ObjectKind);
    });
}

LinksNode* FindLinksNode(EntryKind kind, std::string_view path) {
    if (!LinksList) {
        return nullptr;
    }
    return FindNodeByText(*LinksList, &LinksNode::LinkTarget, path,
                          [kind](const LinksNode& node) { return node.LinkKind == kind; });
}

DevicesNode* FindMasterDevicesNode(std::string_view name) {
    if (!MasterDevicesList) {
        return nullptr;
    }
    return FindNode(*MasterDevicesList, [name](const DevicesNode& node) {
        return node.DeviceName == name || node.VolumeName == name;
    });
}

AssignsNode* FindMasterAssignsNode(std::string_view name) {
    return MasterAssignsList ? FindNodeByText(*MasterAssignsList, &AssignsNode::Name, name) : nullptr;
}

bool IsDeviceFTPMount(std::string_view name) {
    const DevicesNode* node = FindMasterDevicesNode(name);
    return Text<128>(name) == FTPMountRoot || (node != nullptr && node->Type == DeviceFTPMount);
}

bool IsDeviceNetworkShare(std::string_view name) {
    const DevicesNode* node = FindMasterDevicesNode(name);
    return IsDeviceFTPMount(name) || (node != nullptr && node->Type == DeviceNetworkShare);
}

FavoritesNode* FindMasterFavoritesNode(std::string_view path) {
    return MasterFavoritesList ? FindNodeByText(*MasterFavoritesList, &FavoritesNode::Path, path) : nullptr;
}

FTPSitesNode* FindNavFTPSitesNode(std::string_view name) {
    return FTPSitesList ? FindNodeByText(*FTPSitesList, &FTPSitesNode::Name, name) : nullptr;
}

Text<1024> DeviceNameToVolumeName(const Text<1024>& path) {
    const std::string_view whole = path;
    const std::size_t colon = whole.find(':');
    if (colon == std::string_view::npos || !MasterDevicesList) {
        return path;
    }
    const std::string_view root = whole.substr(0, colon + 1);
    for (const DevicesNode& node : *MasterDevicesList) {
        if (node.Mounted != 0 && node.DeviceName == root && !node.VolumeName.Empty()) {
            std::string renamed(node.VolumeName.View());
            renamed.append(whole.substr(colon + 1));
            return renamed.size() <= Text<1024>::Limit ? Text<1024>(renamed) : path;
        }
    }
    return path;
}

} // namespace solvane
