#include "locations/DiskOperations.h"

#include "content/Selection.h"
#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "locations/Devices.h"
#include "locations/DiskEvents.h"
#include "locations/EditNode.h"
#include "locations/KeptPlaces.h"
#include "locations/NavigationList.h"
#include "locations/PlaceLists.h"
#include "locations/RenamedVolume.h"
#include "locations/TabRecords.h"
#include "model/Content.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/ReadArgs.h"
#include "platform/dos/System.h"
#include "platform/dos/Volumes.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/StringFunctions.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace solvane {

namespace {

constexpr std::string_view FormatTool = "SYS:System/Format";
constexpr std::size_t LongestVolumeName = 100; // bytes

// The one device that is selected; null for none or several. Good until the list is made anew.
const DevicesNode* SelectedDevice() {
    if (LBLocation != LocationKind::Computer) {
        return nullptr;
    }
    SelectContentListItems();
    const ContentNode* entry = NumSelected == 1 ? FindFirstSelectedContentNode() : nullptr;
    return entry != nullptr ? DeviceOf(*entry) : nullptr;
}

std::string WithoutColons(std::string_view text) {
    return SAK_RemoveAllOccurences(text, ":");
}

// The name as one word of a command line; most names are one as they stand.
std::string AsWord(const std::string& name) {
    const bool isPlain = std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
    });
    return isPlain ? name : dos::QuoteArgument(name);
}

std::string FormatCommand(const std::string& device) {
    if (EnhancerFormat != 0) {
        return "wbrun " + std::string(FormatTool);
    }
    return FormatText("run %s device=%s req", FormatTool, AsWord(device));
}

// Nothing when the user gives up.
std::optional<std::string> AskName(std::string_view name) {
    AslReqFile = name;
    AslReqDrawer.Clear();
    const int answer =
        EditNodeNoDrawer(SAK_LocaleString(MSG_RELABEL_DEVICE), "PROGDIR:Images/Req_Relabel.png",
                         SAK_LocaleString(MSG_NAME), EmptyValues::Refused, LongestVolumeName);
    return answer > 0 ? std::optional(WithoutColons(AslReqFile)) : std::nullopt;
}

} // namespace

void FormatDisk() {
    const DevicesNode* selected = SelectedDevice();
    if (selected == nullptr) {
        return;
    }
    const std::string device = WithoutColons(selected->DeviceName);
    if (SYSDevice == device) {
        Tell(MSG_CAN_NOT_FORMAT, RequesterImage::Error);
        return;
    }
    if (!SAK_FileExists(FormatTool)) {
        Tell(FormatMessage(MSG_NO_FORMAT_TOOL, selected->Label));
        return;
    }
    if (dos::StartSystem(FormatCommand(device)) != 0) {
        TellDosError(FormatTool);
    }
}

void RelabelDisk() {
    const DevicesNode* selected = SelectedDevice();
    if (selected == nullptr || selected->Mounted == 0) {
        return;
    }
    const Text<128> device = selected->DeviceName;
    const Text<128> before = selected->VolumeName;
    BlockMainWindow(1);
    const std::optional<std::string> name = AskName(WithoutColons(selected->VolumeName));
    BlockMainWindow(0);
    if (!name) {
        return;
    }
    if (!dos::Relabel(device, *name)) {
        TellDosError(MSG_NO_RELABEL);
        return;
    }
    UpdateAllLists();
    UpdateDevicesList();
    if (const DevicesNode* renamed = FindMasterDevicesNode(device)) {
        const Text<128> now = renamed->VolumeName;
        if (FollowNewName({.Before = before, .Now = now})) {
            SavePrefs(1); // the next start must not look for what is gone
        }
    }
    BuildNavigationList();
    if (LBLocation == LocationKind::Computer) {
        ShowComputer(Arrival::New);
    }
}

} // namespace solvane
