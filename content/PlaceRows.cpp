#include "content/PlaceRows.h"

#include "content/DeviceKinds.h"
#include "content/ViewStyles.h"
#include "interface/Images.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/SortGenericLists.h"

#include <compare>
#include <functional>

namespace solvane {

namespace {

std::optional<int> GaugeOf(const DevicesNode& device) {
    const bool isKnown = device.Mounted != 0 && device.Usage == UsageState::Known;
    return isKnown ? std::optional(static_cast<int>(device.PercentUsed)) : std::nullopt;
}

std::string Labelled(MessageNumber label, std::string_view text) {
    return FormatText("%s %s", SAK_LocaleString(label), text);
}

PlaceTexts DeviceFigures(const DevicesNode& device) {
    if (device.Mounted == 0) {
        return {.Text = SAK_LocaleString(MSG_NO_MEDIA)};
    }
    return {.Text = device.TypeName,
            .More = {Labelled(MSG_FREE_COLON, device.FreeText), Labelled(MSG_TOTAL_COLON, device.TotalText)}};
}

PlaceTexts DeviceDetails(const DevicesNode& device, DeviceColumn column) {
    switch (column) {
    case DeviceColumn::Free:
        return {.Text = device.FreeText};
    case DeviceColumn::Used:
        return {.Text = device.UsedText};
    case DeviceColumn::Total:
        return {.Text = device.TotalText};
    case DeviceColumn::Bar:
        return {.Gauge = GaugeOf(device)};
    default:
        return {.Text = device.Label};
    }
}

PlaceTexts DeviceTexts(const DevicesNode& device, DetailsColumn column, std::int32_t style) {
    switch (style) {
    case ViewTiles:
        return {.Text = device.DetailText1,
                .More = {std::string(device.DetailText2.View())},
                .Gauge = GaugeOf(device)};
    case ViewContent:
        return column == DetailsColumn::Name ? PlaceTexts{.Text = device.Label, .Gauge = GaugeOf(device)}
                                             : DeviceFigures(device);
    case ViewDetails:
        return DeviceDetails(device, static_cast<DeviceColumn>(column));
    default:
        return {.Text = device.Label};
    }
}

PlaceTexts AssignTexts(const AssignsNode& assign, DetailsColumn column, std::int32_t style) {
    const std::string_view kind = SAK_LocaleString(assign.MultiAssign != 0 ? MSG_MULTI_ASSIGN : MSG_ASSIGN);
    switch (style) {
    case ViewTiles:
        return {.Text = assign.Name, .More = {std::string(kind), std::string(assign.Target.View())}};
    case ViewContent:
        return column == DetailsColumn::Name
                   ? PlaceTexts{.Text = assign.Name, .More = {std::string(assign.Target.View())}}
                   : PlaceTexts{.Text = kind};
    default:
        return {.Text = column == DetailsColumn::Name ? assign.Name.View() : assign.Target.View()};
    }
}

// A volume among the objects of the desktop.
PlaceTexts DesktopVolumeTexts(const ContentNode& node, const DevicesNode& device, DetailsColumn column) {
    switch (column) {
    case DetailsColumn::Name:
        return {.Text = node.EntryName};
    case DetailsColumn::Size:
        return {.Text = device.TotalText};
    case DetailsColumn::Type:
        return {.Text = node.DatatypeName};
    default:
        return {};
    }
}

// What stands in the columns behind a kept place's name.
std::string_view KeptPlaceFact(const ContentNode& node, std::int32_t column) {
    constexpr std::int32_t host = 2;
    if (LBLocation != LocationKind::FTPSites) {
        return node.EntryPath;
    }
    const FTPSitesNode* site = FindNavFTPSitesNode(node.EntryName);
    if (site == nullptr) {
        return {};
    }
    return column == host ? site->Address.View() : site->RemoteDrawer.View();
}

PlaceTexts KeptPlaceTexts(const ContentNode& node, DetailsColumn column, std::int32_t style) {
    if (style == ViewTiles || (style == ViewContent && column == DetailsColumn::Name)) {
        return {.Text = node.EntryName, .More = {std::string(node.EntryPath.View())}};
    }
    if (column == DetailsColumn::Name) {
        return {.Text = node.EntryName};
    }
    return style == ViewDetails ? PlaceTexts{.Text = KeptPlaceFact(node, static_cast<std::int32_t>(column))}
                                : PlaceTexts();
}

std::string_view LargePictureOf(LocationKind location) {
    switch (location) {
    case LocationKind::Bookmarks:
        return "PROGDIR:Images/Img_Bookmarks.png";
    case LocationKind::Favorites:
        return "PROGDIR:Images/Img_Favorites.png";
    case LocationKind::Workbench:
        return "PROGDIR:Images/Img_Workbench.png";
    case LocationKind::Computer:
        return "PROGDIR:Images/Img_Computer.png";
    case LocationKind::Assigns:
        return "PROGDIR:Images/Img_Assigns.png";
    case LocationKind::FTPSites:
        return "PROGDIR:Images/Img_FTPSites.png";
    case LocationKind::OS4Depot:
        return "PROGDIR:Images/Img_OS4Depot.png";
    case LocationKind::Aminet:
        return "PROGDIR:Images/Img_Aminet.png";
    default:
        return "PROGDIR:Images/Img_Drawer.png";
    }
}

// The icon of the drawer or volume that a kept place leads to; nothing for another place.
std::vector<intuition::ImageStep> IconStepOf(const ContentNode& node) {
    if (node.PlaceFacts || node.LeadsTo != LocationKind::Drawer || MayHang(node.EntryPath)) {
        return {};
    }
    return {{.Path = std::string(node.EntryPath.View()) +
                     (SAK_IsDeviceRoot(node.EntryPath) ? "Disk.info" : ".info")}};
}

template <class Key>
int CompareBy(const ContentNode& a, const ContentNode& b, Key key) {
    const DevicesNode* first = DeviceOf(a);
    const DevicesNode* second = DeviceOf(b);
    if (first == nullptr || second == nullptr) {
        return 0;
    }
    const std::weak_ordering order = std::invoke(key, *first) <=> std::invoke(key, *second);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

template <class Key>
void SortDevicesBy(std::int32_t direction, Key key) {
    SAK_SortGenericList(*ContentList, SortOrderOf(direction),
                        [key](const ContentNode& a, const ContentNode& b) { return CompareBy(a, b, key); });
}

// In the order of the master list.
void SortDevicesByName(std::int32_t direction) {
    SortDevicesBy(direction, Prefs.SortDevices == 0 ? &DevicesNode::DeviceName : &DevicesNode::VolumeName);
}

} // namespace

PlaceTexts PlaceCellTexts(const ContentNode& node, DetailsColumn column, std::int32_t style) {
    if (const DevicesNode* device = DeviceOf(node)) {
        const bool onDesktop = LBLocation == LocationKind::Workbench && style == ViewDetails;
        return onDesktop ? DesktopVolumeTexts(node, *device, column) : DeviceTexts(*device, column, style);
    }
    const AssignsNode* assign = AssignOf(node);
    return assign != nullptr ? AssignTexts(*assign, column, style) : KeptPlaceTexts(node, column, style);
}

bool IsPlace(const ContentNode& node) {
    return node.PlaceFacts || LBLocation == LocationKind::Bookmarks ||
           LBLocation == LocationKind::Favorites || LBLocation == LocationKind::FTPSites;
}

intuition::ImageId PlacePicture(const ContentNode& node) {
    if (const DevicesNode* device = DeviceOf(node)) {
        return DeviceImageObject(device->Type);
    }
    return ListImageObject(node.PlaceFacts ? ListImage::Assign : ListImageOf(node.LeadsTo, node.EntryPath));
}

std::vector<intuition::ImageStep> PlacePictureSteps(const ContentNode& node) {
    if (const DevicesNode* device = DeviceOf(node)) {
        return DeviceImageSteps(*device);
    }
    if (node.PlaceFacts) {
        return {{.Path = "PROGDIR:Images/Img_Assigns.png"}};
    }
    std::vector<intuition::ImageStep> steps = IconStepOf(node);
    steps.push_back({.Path = std::string(LargePictureOf(node.LeadsTo))});
    return steps;
}

std::vector<intuition::ImageStep> PlaceImageSteps(const ContentNode& node, std::int32_t style) {
    if (!HasLargePictures(style)) {
        if (Prefs.ShowActualIcons == 0) {
            return {};
        }
        const DevicesNode* device = DeviceOf(node);
        return device != nullptr ? DeviceImageSteps(*device) : IconStepOf(node);
    }
    if (AssignOf(node) != nullptr && style == ViewTiles) {
        return {{.Path = TileImagePath(TileImage::Assign, Prefs.TilesIconSize)}};
    }
    if (!node.PlaceFacts && Prefs.ShowActualIcons == 0) {
        return {{.Path = std::string(LargePictureOf(node.LeadsTo))}};
    }
    return PlacePictureSteps(node);
}

ListImage ListImageOf(LocationKind location, std::string_view path) {
    switch (location) {
    case LocationKind::Bookmarks:
        return ListImage::Bookmark;
    case LocationKind::Favorites:
        return ListImage::Favorite;
    case LocationKind::Workbench:
        return ListImage::Desktop;
    case LocationKind::Computer:
        return ListImage::Computer;
    case LocationKind::Assigns:
        return ListImage::Assign;
    case LocationKind::FTPSites:
    case LocationKind::OS4Depot:
    case LocationKind::Aminet:
        return ListImage::FTPSite;
    default:
        break;
    }
    if (!SAK_IsDeviceRoot(path) || Text<128>(path) == "ENV:") {
        return ListImage::Drawer;
    }
    return FindMasterAssignsNode(path) != nullptr ? ListImage::Assign : ListImage::Disk;
}

bool MayHang(std::string_view path) {
    Text<1024> root;
    SAK_GetDeviceRoot(path, root);
    const DevicesNode* device = FindMasterDevicesNode(root);
    return device != nullptr && device->MayHang != 0;
}

void SortDevicesList(std::int32_t direction) {
    if (!ContentList) {
        return;
    }
    const bool isDetails = Prefs.ComputerViewStyle == ViewDetails;
    switch (static_cast<DeviceColumn>(isDetails ? Prefs.ComputerDetailsCISortColumn : 0)) {
    case DeviceColumn::Name:
        SortDevicesBy(direction, &DevicesNode::Label);
        break;
    case DeviceColumn::Free:
        SortDevicesBy(direction, &DevicesNode::FreeBytes);
        break;
    case DeviceColumn::Used:
        SortDevicesBy(direction,
                      [](const DevicesNode& device) { return device.TotalBytes - device.FreeBytes; });
        break;
    case DeviceColumn::Total:
        SortDevicesBy(direction, &DevicesNode::TotalBytes);
        break;
    case DeviceColumn::Bar:
        SortDevicesBy(direction, &DevicesNode::PercentUsed);
        break;
    default:
        SortDevicesByName(direction);
        break;
    }
}

void SortAssignsList(std::int32_t direction) {
    if (ContentList) {
        SAK_SortGenericList(*ContentList, SortOrderOf(direction), ByText(&ContentNode::EntryName));
    }
}

} // namespace solvane
