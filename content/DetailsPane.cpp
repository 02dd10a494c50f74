#include "content/DetailsPane.h"

#include "content/RowPictures.h"
#include "content/Status.h"
#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/dos/Info.h"
#include "platform/intuition/WishedImages.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Numbers.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

// Shows the first picture there is among the icons; the picture of the program's own last.
void ShowPicture(const std::vector<std::string>& icons, std::string_view last) {
    if (Prefs.DetailsPane == 0) {
        return;
    }
    intuition::ImageWish wish;
    for (const std::string& icon : icons) {
        wish.Steps.push_back({.Path = icon});
    }
    wish.Width = wish.Height = DetailsPictureSide;
    wish.Fallback = intuition::ObtainImage(last);
    SetDetailsPicture(intuition::LoadImage(wish));
    intuition::ReleaseImage(wish.Fallback);
}

std::string_view PlaceWithoutSlash() {
    std::string_view path = CurrentPath;
    if (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

void ShowPictureOfPlace() {
    const std::string path(PlaceWithoutSlash());
    if (!SAK_IsDeviceRoot(path)) {
        ShowPicture({path + ".info", "ENVARC:Sys/def_drawer.info"}, "PROGDIR:Images/Img_Drawer.png");
        return;
    }
    const Text<128> root(path);
    const bool isSystem = root == "DH0:" || root == "SYS:";
    ShowPicture({path + "Disk.info", isSystem ? "ENVARC:Sys/def_sys.info" : "ENVARC:Sys/def_disk.info"},
                "PROGDIR:Images/Img_DeviceUnknown.png");
}

void FillCounts() {
    Details7Buffer = FormatText("%s %s", SAK_LocalizeNumber(TotalNodes),
                                SAK_LocaleString(TotalNodes == 1 ? MSG_ITEM : MSG_ITEMS));
    Details8Buffer = TotalBytesBuffer;
}

void FillPlace() {
    ClearDetailsBuffers();
    const std::string_view path = PlaceWithoutSlash();
    Text<1024> drawer;
    Text<128> name;
    SAK_SplitFilename(path, drawer, name);
    Details1Buffer = name.Empty() ? path : name.View();
    if (!SAK_IsDeviceRoot(path)) {
        Details2Buffer = SAK_LocaleString(MSG_DRAWER);
    }
    FillCounts();
    SetFuelGaugeImage(-1);
    ShowPictureOfPlace();
}

// What a volume has besides; nothing where that cannot be found out.
void FillVolume() {
    const auto info = dos::Info(CurrentPath);
    if (!info || info->Blocks == 0) {
        return;
    }
    const std::uint64_t used = std::min(info->BlocksUsed, info->Blocks);
    Details2Buffer = FormatText("%s %s", SAK_LocaleString(MSG_FREE_COLON),
                                BytesToUnit((info->Blocks - used) * info->BytesPerBlock));
    if (info->State == dos::DiskState::WriteProtected) {
        Details3Buffer = SAK_LocaleString(MSG_WRITE_PROTECTED);
    }
    Details5Buffer = FormatText("%s %s", SAK_LocaleString(MSG_TOTAL_COLON),
                                BytesToUnit(info->Blocks * info->BytesPerBlock));
    SetFuelGaugeImage(static_cast<int>(static_cast<double>(used) / static_cast<double>(info->Blocks) * 100));
}

void FillEntry(const ContentNode& node) {
    ClearDetailsBuffers();
    Details1Buffer = node.EntryName;
    Details2Buffer = node.DatatypeName;
    Details3Buffer = node.Dimensions;
    Details4Buffer = node.EntrySizeText;
    Details5Buffer = node.DateText;
    Details6Buffer = node.ProtectionText;
    Details7Buffer = node.Comment;
    SetFuelGaugeImage(-1);
    std::vector<std::string> icons;
    for (const intuition::ImageStep& step : IconSteps(node)) {
        icons.push_back(step.Path);
    }
    ShowPicture(icons, IsDrawerKind(node.ObjectKind) ? "PROGDIR:Images/Img_Drawer.png"
                                                     : "PROGDIR:Images/Img_Project.png");
}

void FillSelection() {
    bool hasFiles = false;
    for (const ContentNode& node : *ContentList) {
        hasFiles = hasFiles || (node.Selected != 0 && !IsDrawerKind(node.ObjectKind));
    }
    ClearDetailsBuffers();
    Details1Buffer =
        FormatText("%s %s", SAK_LocalizeNumber(NumSelected), SAK_LocaleString(MSG_ITEMS_SELECTED));
    FillCounts();
    SetFuelGaugeImage(-1);
    ShowPicture({}, hasFiles ? "PROGDIR:Images/Img_MultiProject.png" : "PROGDIR:Images/Img_MultiDrawer.png");
}

} // namespace

void DetailsPane1() {
    FillPlace();
    if (SAK_IsDeviceRoot(CurrentPath)) {
        FillVolume();
    }
    SetDetailsGadBufferAll();
}

void DetailsPane2() {
    FillPlace();
    SetDetailsGadBufferAll();
    ShowContentStatus();
}

void DetailsPane3() {
    const ContentNode* entry = NumSelected == 1 ? FindFirstSelectedContentNode() : nullptr;
    if (entry != nullptr) {
        FillEntry(*entry);
    } else if (NumSelected > 1) {
        FillSelection();
    } else {
        FillPlace();
    }
    SetDetailsGadBufferAll();
    ShowContentStatus();
}

void DetailsPaneSwitchedTabs() {
    ShowKeptDetails();
    SetStatusBar(Text<128>(StatusBarBuffer1), Text<128>(StatusBarBuffer2));
}

} // namespace solvane
