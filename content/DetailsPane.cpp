#include "content/DetailsPane.h"

#include "content/DeviceKinds.h"
#include "content/PlaceRows.h"
#include "content/RowPictures.h"
#include "content/Selection.h"
#include "content/Status.h"
#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/WorkingSet.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

// What a list that is no drawer shows for itself, and for several of its entries.
struct PlacePictures {
    LocationKind Location;
    std::string_view Place, Multi;
};
constexpr std::array PicturesOfPlaces = {
    PlacePictures{LocationKind::Bookmarks, "PROGDIR:Images/Img_Bookmarks.png",
                  "PROGDIR:Images/Img_MultiBookmarks.png"},
    PlacePictures{LocationKind::Favorites, "PROGDIR:Images/Img_Favorites.png",
                  "PROGDIR:Images/Img_MultiFavorites.png"},
    PlacePictures{LocationKind::Workbench, "PROGDIR:Images/Img_Workbench.png",
                  "PROGDIR:Images/Img_MultiProject.png"},
    PlacePictures{LocationKind::Computer, "PROGDIR:Images/Img_Computer.png",
                  "PROGDIR:Images/Img_MultiDevice.png"},
    PlacePictures{LocationKind::Assigns, "PROGDIR:Images/Img_Assigns.png",
                  "PROGDIR:Images/Img_MultiAssigns.png"},
    PlacePictures{LocationKind::FTPSites, "PROGDIR:Images/Img_FTPSites.png",
                  "PROGDIR:Images/Img_MultiFTPSites.png"},
    PlacePictures{LocationKind::OS4Depot, "PROGDIR:Images/Img_OS4Depot.png",
                  "PROGDIR:Images/Img_MultiProject.png"},
    PlacePictures{LocationKind::Aminet, "PROGDIR:Images/Img_Aminet.png",
                  "PROGDIR:Images/Img_MultiProject.png"},
    PlacePictures{LocationKind::Archive, "PROGDIR:Images/Req_Archive.png",
                  "PROGDIR:Images/Img_MultiProject.png"},
};

// Null for a drawer and for lists of results.
const PlacePictures* PicturesOfPlace() {
    const auto* found = std::ranges::find(PicturesOfPlaces, LBLocation, &PlacePictures::Location);
    return found != PicturesOfPlaces.end() ? found : nullptr;
}

std::string_view PlaceWithoutSlash() {
    std::string_view path = CurrentPath;
    if (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

void ShowPictureOfPlace() {
    if (const PlacePictures* place = PicturesOfPlace()) {
        std::vector<intuition::ImageStep> steps;
        if (LBLocation == LocationKind::Computer) {
            steps.push_back({.Path = "ENVARC:Sys/def_computer.info"});
        }
        SetThumbnailImage(std::move(steps), place->Place);
    } else {
        SetContentImage(PlaceWithoutSlash());
    }
}

void ClearDetails() {
    ActiveSet.AwaitedVolume.Clear();
    ClearDetailsBuffers();
}

enum class Bytes { Told, None }; // whether the entries have sizes

void FillCounts(Bytes bytes) {
    Details7Buffer = FormatText("%s %s", SAK_LocalizeNumber(TotalNodes),
                                SAK_LocaleString(TotalNodes == 1 ? MSG_ITEM : MSG_ITEMS));
    if (bytes == Bytes::Told) {
        Details8Buffer = TotalBytesBuffer;
    }
}

void FillPlace(Bytes bytes) {
    ClearDetails();
    const std::string_view path = PlaceWithoutSlash();
    Text<1024> drawer;
    Text<128> name;
    SAK_SplitFilename(path, drawer, name);
    Details1Buffer = name.Empty() ? path : name.View();
    if (PicturesOfPlace() == nullptr && !SAK_IsDeviceRoot(path)) {
        Details2Buffer = SAK_LocaleString(MSG_DRAWER);
    }
    FillCounts(bytes);
    SetFuelGaugeImage(-1);
    ShowPictureOfPlace();
}

// What a volume has besides, from the record of its device: its disk may be one that does not answer. Nothing
// where that is not known; should it come, DetailsPaneVolume tells it.
void FillVolume() {
    const DevicesNode* device = DeviceOfPlace();
    if (device == nullptr || device->Usage != UsageState::Known) {
        ActiveSet.AwaitedVolume = CurrentPath;
        return;
    }
    ActiveSet.AwaitedVolume.Clear();
    if (device->TotalBytes == 0) {
        return;
    }
    Details2Buffer = FormatText("%s %s", SAK_LocaleString(MSG_FREE_COLON), device->FreeText);
    if (device->WriteProtected != 0) {
        Details3Buffer = SAK_LocaleString(MSG_WRITE_PROTECTED);
    }
    Details5Buffer = FormatText("%s %s", SAK_LocaleString(MSG_TOTAL_COLON), device->TotalText);
    SetFuelGaugeImage(static_cast<int>(device->PercentUsed));
}

// An assign stands before a volume of its name.
void ShowPictureOfRoot(std::string_view root) {
    const DevicesNode* device =
        FindMasterAssignsNode(root) == nullptr ? FindMasterDevicesNode(root) : nullptr;
    if (device != nullptr) {
        SetThumbnailImage(DeviceImageSteps(*device), "PROGDIR:Images/Img_DeviceUnknown.png");
    } else {
        SetThumbnailImage({}, "PROGDIR:Images/Img_Assigns.png");
    }
}

std::string_view UsualPictureOf(const ContentNode& node) {
    const PlacePictures* place = IsPlace(node) ? PicturesOfPlace() : nullptr;
    if (place != nullptr) {
        return place->Place;
    }
    return IsDrawerKind(node.ObjectKind) ? "PROGDIR:Images/Img_Drawer.png" : "PROGDIR:Images/Img_Project.png";
}

void FillEntry(const ContentNode& node) {
    ClearDetails();
    Details1Buffer = node.EntryName;
    Details2Buffer = node.DatatypeName;
    Details3Buffer = node.Dimensions;
    Details4Buffer = node.EntrySizeText;
    Details5Buffer = node.DateText;
    Details6Buffer = node.ProtectionText;
    Details7Buffer = node.Comment;
    SetFuelGaugeImage(-1);
    SetThumbnailImage(DetailsPictureSteps(node), UsualPictureOf(node));
}

void ShowPictureOfSelection() {
    const PlacePictures* place = PicturesOfPlace();
    SetThumbnailImage({}, place != nullptr ? place->Multi : "PROGDIR:Images/Img_MultiProject.png");
}

void FillSelection(Bytes bytes) {
    ClearDetails();
    Details1Buffer =
        FormatText("%s %s", SAK_LocalizeNumber(NumSelected), SAK_LocaleString(MSG_ITEMS_SELECTED));
    FillCounts(bytes);
    SetFuelGaugeImage(-1);
    ShowPictureOfSelection();
}

// What is selected, or the place when nothing is.
void TellSelection(Bytes bytes) {
    const ContentNode* entry = OnlySelectedEntry();
    if (entry != nullptr) {
        FillEntry(*entry);
    } else if (NumSelected > 1) {
        FillSelection(bytes);
    } else {
        FillPlace(bytes);
    }
    SetDetailsGadBufferAll();
    if (bytes == Bytes::Told) {
        ShowContentStatus();
    } else {
        ShowCountStatus();
    }
}

} // namespace

DevicesNode* DeviceOfPlace() {
    Text<1024> root(PlaceWithoutSlash());
    if (!SAK_IsDeviceRoot(root)) {
        return nullptr;
    }
    if (const AssignsNode* assign = FindMasterAssignsNode(root)) {
        SAK_GetDeviceRoot(assign->Target, root);
    }
    return FindMasterDevicesNode(root);
}

void DetailsPaneVolume() {
    if (!ActiveSet.AwaitedVolume.Empty() && ActiveSet.AwaitedVolume == CurrentPath) {
        FillVolume();
        SetDetailsGadBufferAll();
    }
}

void DetailsPane1() {
    FillPlace(Bytes::Told);
    if (SAK_IsDeviceRoot(CurrentPath)) {
        FillVolume();
    }
    SetDetailsGadBufferAll();
}

void DetailsPane2() {
    FillPlace(Bytes::Told);
    SetDetailsGadBufferAll();
    ShowContentStatus();
}

void DetailsPane3() {
    TellSelection(Bytes::Told);
}

void DetailsPane5() {
    TellSelection(Bytes::None);
}

void DetailsPaneBrowsers() {
    TellSelection(Bytes::Told);
}

void SetContentImage(std::string_view path) {
    if (AtFTPMount != 0) {
        SetThumbnailImage({}, "PROGDIR:Images/Img_FTPSites.png");
    } else if (SAK_IsDeviceRoot(path)) {
        ShowPictureOfRoot(path);
    } else {
        SetThumbnailImage({{.Path = std::string(path) + ".info"}, {.Path = "ENVARC:Sys/def_drawer.info"}},
                          "PROGDIR:Images/Img_Drawer.png");
    }
}

void DetailsPaneSwitchedTabs() {
    DetailsPaneVolume();
    ShowKeptDetails();
    SetStatusBar(Text<128>(StatusBarBuffer1), Text<128>(StatusBarBuffer2));
}

} // namespace solvane
