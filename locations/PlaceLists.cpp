#include "locations/PlaceLists.h"

#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/DetailsPane.h"
#include "content/DeviceKinds.h"
#include "content/Drawers.h"
#include "content/PlaceRows.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/Status.h"
#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "locations/Assigns.h"
#include "locations/DeviceUsage.h"
#include "locations/EnterDrawer.h"
#include "locations/History.h"
#include "locations/NavigationList.h"
#include "locations/NewNodes.h"
#include "locations/PlaceRouter.h"
#include "locations/RescanTabs.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"
#include "sak/Numbers.h"
#include "sak/Requesters.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace solvane {

namespace {

// An entry that stands for a place; null after a requester.
ContentNode* AppendEntry(std::string_view name, std::string_view path, std::string_view key) {
    ContentNode* entry = AppendNode(*ContentList);
    if (entry != nullptr) {
        DefaultContentNode(*entry);
        entry->EntryName = name;
        entry->EntryPath = path;
        entry->EntryDisplayName = key;
        entry->PlaceFacts = std::make_unique<PlaceRecord>();
    }
    return entry;
}

void BuildPlaces() {
    SAK_StopNotify();
    Changes = 0;
    AtFTPMount = 0;
    AtWHDLoadGamesRootDrawer = 0;
    BuildContentList();
}

// Leaves what is on show for a place that is no drawer.
void GoTo(LocationKind location, MessageNumber name, std::string_view word, Arrival arrival) {
    SetPreviewPaneNone();
    LeaveShownPlace(arrival);
    FreeContentList(1);
    AddShownPlace(SAK_LocaleString(name), word, location);
    LBLocation = location;
    SetCurrentPath(SAK_LocaleString(name));
}

std::string Count(std::int64_t number, std::string_view noun) {
    return FormatText("%s %s", SAK_LocalizeNumber(number), noun);
}

std::string ItemCount() {
    return Count(TotalNodes, SAK_LocaleString(TotalNodes == 1 ? MSG_ITEM : MSG_ITEMS));
}

std::string Colon(MessageNumber label, std::string_view text) {
    return FormatText("%s: %s", SAK_LocaleString(label), text);
}

void FillComputer() {
    GetRAMUsage();
    Details1Buffer = SAK_LocaleString(MSG_COMPUTER);
    Details2Buffer = Colon(MSG_FREE_RAM, freeRAMBuffer);
    Details5Buffer = Colon(MSG_TOTAL_RAM, totalRAMBuffer);
    Details7Buffer = ItemCount();
    SetFuelGaugeImage(static_cast<int>(percentRAM));
    SetThumbnailImage({{.Path = "ENVARC:Sys/def_computer.info"}}, "PROGDIR:Images/Img_Computer.png");
}

void FillAssigns() {
    Details1Buffer = SAK_LocaleString(MSG_ASSIGNS);
    Details7Buffer = ItemCount();
    SetThumbnailImage({}, "PROGDIR:Images/Img_Assigns.png");
}

void FillDevice(const DevicesNode& device) {
    Details1Buffer = device.Label;
    Details3Buffer = device.WriteProtected != 0 ? SAK_LocaleString(MSG_WRITE_PROTECTED) : std::string_view();
    Details4Buffer = device.TypeName;
    if (device.Mounted != 0) {
        Details2Buffer = FormatText("%s %s", SAK_LocaleString(MSG_FREE_COLON), device.FreeText);
        Details5Buffer = FormatText("%s %s", SAK_LocaleString(MSG_TOTAL_COLON), device.TotalText);
        Details6Buffer = device.FileSystem;
        Details7Buffer = device.ShareName;
        Details8Buffer = device.Created;
    }
    if (device.Usage == UsageState::Known) {
        SetFuelGaugeImage(static_cast<int>(device.PercentUsed));
    }
    SetThumbnailImage(DeviceImageSteps(device), "PROGDIR:Images/Img_DeviceUnknown.png");
}

void FillAssign(const AssignsNode& assign) {
    Details1Buffer = assign.Name;
    Details2Buffer = SAK_LocaleString(assign.MultiAssign != 0 ? MSG_MULTI_ASSIGN : MSG_ASSIGN);
    Details3Buffer = assign.Target;
    SetThumbnailImage({}, "PROGDIR:Images/Img_Assigns.png");
}

void FillSelection() {
    Details1Buffer = Count(NumSelected, SAK_LocaleString(MSG_ITEMS_SELECTED));
    Details7Buffer = ItemCount();
    SetThumbnailImage({}, LBLocation == LocationKind::Computer ? "PROGDIR:Images/Img_MultiDevice.png"
                                                               : "PROGDIR:Images/Img_MultiAssigns.png");
}

void FillPlace() {
    const ContentNode* entry = NumSelected == 1 ? FindFirstSelectedContentNode() : nullptr;
    const DevicesNode* device = entry != nullptr ? DeviceOf(*entry) : nullptr;
    const AssignsNode* assign = entry != nullptr ? AssignOf(*entry) : nullptr;
    if (device != nullptr) {
        FillDevice(*device);
    } else if (assign != nullptr) {
        FillAssign(*assign);
    } else if (NumSelected > 1) {
        FillSelection();
    } else if (LBLocation == LocationKind::Computer) {
        FillComputer();
    } else {
        FillAssigns();
    }
}

// Where the keys want it: in a new window, or in this or a new tab.
void OpenRoot(std::string_view path) {
    const Text<1024> root = path; // the entry goes when the drawer is read
    GoWhereWanted(root, [&root] { return PopulateContent2(root, root); });
    SetMenuState();
    SetToolbarState();
}

} // namespace

PaneRows CopyFromMasterDevicesList() {
    if (!MasterDevicesList || !ContentList) {
        return PaneRows::Same;
    }
    const PaneRows rows = GetAllDeviceUsage();
    for (const DevicesNode& device : *MasterDevicesList) {
        ContentNode* entry = AppendEntry(device.Label, device.VolumeName, device.Key);
        if (entry == nullptr) {
            break;
        }
        entry->PlaceFacts->Of = device;
    }
    return rows;
}

void CopyFromMasterAssignsList() {
    if (!MasterAssignsList || !ContentList) {
        return;
    }
    for (const AssignsNode& assign : *MasterAssignsList) {
        ContentNode* entry = AppendEntry(assign.Name, assign.Name, assign.Key);
        if (entry == nullptr) {
            return;
        }
        entry->PlaceFacts->Of = assign;
    }
}

void UpdateAssignsList() {
    if (GetAssigns()) {
        SortMasterAssignsList();
    }
    CopyFromMasterAssignsList();
}

void BuildComputerList() {
    BuildPlaces();
}

void BuildAssignsList() {
    BuildPlaces();
}

void ShowComputer(Arrival arrival) {
    BlockMainWindow(1);
    GoTo(LocationKind::Computer, MSG_COMPUTER, "Computer", arrival);
    const PaneRows rows = CopyFromMasterDevicesList();
    SortDevicesList(Prefs.ComputerSortDirection);
    BuildComputerList();
    if (rows == PaneRows::Changed) {
        BuildNavigationList();
    }
    DetailsPane4();
    SetMenuState();
    SetToolbarState();
    BlockMainWindow(0);
}

void ShowAssigns(Arrival arrival) {
    BlockMainWindow(1);
    GoTo(LocationKind::Assigns, MSG_ASSIGNS, "Assigns", arrival);
    UpdateAssignsList();
    SortAssignsList(Prefs.AssignsSortDirection);
    BuildAssignsList();
    DetailsPane4();
    SetMenuState();
    SetToolbarState();
    BlockMainWindow(0);
}

void OpenPlace(const ContentNode& entry) {
    const AssignsNode* assign = AssignOf(entry);
    const DevicesNode* device = DeviceOf(entry);
    if (assign != nullptr) {
        const Text<1024> root = assign->MultiAssign != 0 ? ChooseDrawerOfAssign(Text<128>(assign->Name))
                                                         : Text<1024>(assign->Name);
        if (!root.Empty()) {
            OpenRoot(root);
        }
    } else if (device != nullptr && device->Mounted != 0) {
        HandleNavigationListBrowser(Text<128>(device->Key)); // by what is in the device now
    }
}

void DetailsPane4() {
    ClearDetailsBuffers();
    SetFuelGaugeImage(-1);
    FillPlace();
    SetDetailsGadBufferAll();
    ShowCountStatus();
}

void DeviceUsageCame() {
    if (!TakeDeviceUsage()) {
        return;
    }
    SetRescanAllTabsComputer(WhichTabs::Others);
    SetRescanAllTabsByLocation(LocationKind::Workbench, WhichTabs::Others);
    if (LBLocation == LocationKind::Computer) {
        SortAnew();
        DetailsPane4();
    } else if (LBLocation == LocationKind::Workbench && Objects.ContentList != nullptr) {
        FitColumnInfo();
        Objects.ContentList->Refresh();
    }
    DetailsPaneVolume();
}

} // namespace solvane
