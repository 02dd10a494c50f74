#include "locations/Assigns.h"

#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "locations/NewNodes.h"
#include "model/ContentNode.h"
#include "model/Devices.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Volumes.h"
#include "platform/intuition/FormRequesters.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/SortGenericLists.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

// What the path leads to, by volume; the path itself where nothing is to be found now, or where looking could
// hang.
Text<1024> ResolvedPath(const std::string& path) {
    Text<1024> resolved;
    if (path.size() > Text<1024>::Limit) {
        return PathTooLong; // which is told when it is chosen
    }
    const DevicesNode* device = SAK_GetDeviceRoot(path, resolved) ? FindMasterDevicesNode(resolved) : nullptr;
    if (device != nullptr && device->MayHang != 0) {
        return path;
    }
    const dos::FileLock lock = dos::Lock(path);
    return lock && SAK_SaferNameFromLockVolumeFromDevice(lock, resolved) ? resolved : Text<1024>(path);
}

} // namespace

bool GetAssigns() {
    if (!StartList(MasterAssignsList)) {
        return false;
    }
    for (const dos::AssignInfo& assign : dos::Assigns()) {
        AssignsNode* node = AppendNode(*MasterAssignsList);
        if (node == nullptr) {
            return false;
        }
        node->Name = FormatText("%s:", assign.Name);
        node->Key = FormatText("[Ass]%s", assign.Name);
        node->MultiAssign = assign.Targets.size() > 1 ? 1 : 0;
        node->Target = assign.Targets.empty() ? std::string() : assign.Targets.front();
    }
    return true;
}

bool IsAssignNow(std::string_view name) {
    return std::ranges::any_of(
        dos::Assigns(), [&](const dos::AssignInfo& assign) { return Text<128>(assign.Name + ":") == name; });
}

void SortMasterAssignsList() {
    if (MasterAssignsList) {
        SAK_SortGenericList(*MasterAssignsList, SortOrder::Ascending, ByText(&AssignsNode::Name));
    }
}

bool GetMultiAssign(std::string_view name) {
    if (!StartList(MultiAssignList)) {
        return false;
    }
    const WithoutRequesters quiet;
    for (const dos::AssignInfo& assign : dos::Assigns()) {
        if (Text<128>(FormatText("%s:", assign.Name)) != name) {
            continue;
        }
        for (const std::string& target : assign.Targets) {
            MultiAssignNode* node = AppendNode(*MultiAssignList);
            if (node == nullptr) {
                return false;
            }
            node->Path = ResolvedPath(target);
        }
        return true;
    }
    return false;
}

std::int32_t GetMultiAssignReq(std::string_view name) {
    if (!MultiAssignList || SAK_GenericListCount(*MultiAssignList) == 0) {
        return -1;
    }
    intuition::FormSpec form;
    form.Title = FormatMessage(MSG_SELECT_MULTI_ASSIGN, name);
    for (const MultiAssignNode& node : *MultiAssignList) {
        form.Choices.emplace_back(node.Path.View());
    }
    form.Gadgets = {std::string(SAK_LocaleString(MSG_OK_GAD)), std::string(SAK_LocaleString(MSG_CANCEL_GAD))};
    const intuition::FormAnswer answer = intuition::AskForm(MainWindow.get(), form);
    if (answer.Gadget < 0) {
        Tell(MSG_NO_WINDOW, RequesterImage::Error);
    }
    const bool isChosen = answer.Gadget == 1 && answer.Choice < form.Choices.size();
    return isChosen ? static_cast<std::int32_t>(answer.Choice) : -1;
}

Text<1024> ChooseDrawerOfAssign(const Text<128>& name) {
    if (!GetMultiAssign(name) || SAK_GenericListCount(*MultiAssignList) < 2) {
        return Text<1024>(name);
    }
    BlockMainWindow(1);
    const std::int32_t chosen = GetMultiAssignReq(name);
    BlockMainWindow(0);
    const MultiAssignNode* node =
        chosen >= 0 ? SAK_GetGenericListNode(*MultiAssignList, static_cast<std::uint32_t>(chosen)) : nullptr;
    return node != nullptr ? node->Path : Text<1024>();
}

} // namespace solvane
