#include "content/ViewStyles.h"

#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "sak/StringFunctions.h"

#include <algorithm>
#include <array>

namespace solvane {

std::int32_t LocationsViewStyle = NoLocationsStyle;

namespace {

constexpr std::array<IconBox, 8> ThumbnailBoxes = {
    {{64, 36}, {64, 64}, {128, 72}, {128, 128}, {192, 108}, {200, 200}, {256, 144}, {256, 256}}};
constexpr std::int32_t UsualThumbnail = 1;

} // namespace

void CheckLocations() {
    LocationsViewStyle = NoLocationsStyle;
    if (!LocationsList) {
        return;
    }
    std::string path(CurrentPath.View()); // "Work:Games/" is as good a text for a drawer as "Work:Games"
    if (LBLocation == LocationKind::Drawer && !path.ends_with(':') && !path.ends_with('/')) {
        path += '/';
    }
    for (const LocationsNode& node : *LocationsList) {
        if (SAK_Find(path, path.size(), node.Path, FindMode::FoldCase) >= 0) {
            LocationsViewStyle = node.ViewStyle;
            return;
        }
    }
}

std::int32_t PrefsRecord::*StyleSettingOf(LocationKind location) {
    switch (location) {
    case LocationKind::Bookmarks:
        return &PrefsRecord::BookmarksViewStyle;
    case LocationKind::Favorites:
        return &PrefsRecord::FavoritesViewStyle;
    case LocationKind::Workbench:
        return &PrefsRecord::WorkbenchViewStyle;
    case LocationKind::Computer:
        return &PrefsRecord::ComputerViewStyle;
    case LocationKind::Assigns:
        return &PrefsRecord::AssignsViewStyle;
    case LocationKind::FTPSites:
    case LocationKind::OS4Depot:
    case LocationKind::Aminet:
        return &PrefsRecord::FTPSitesViewStyle;
    case LocationKind::Archive:
        return &PrefsRecord::ArchiveViewStyle;
    default:
        return &PrefsRecord::ContentViewStyle;
    }
}

std::int32_t& StylePreferenceOf(LocationKind location) {
    return Prefs.*StyleSettingOf(location);
}

std::int32_t ViewStyleInForce() {
    const bool bound = LBLocation == LocationKind::Drawer && LocationsViewStyle != NoLocationsStyle;
    return bound ? LocationsViewStyle : StylePreferenceOf(LBLocation);
}

bool ShowsThumbnails(std::int32_t style) {
    return style == ViewThumbnail || style == ViewThumbnailDetails;
}

bool HasLargePictures(std::int32_t style) {
    return style == ViewTiles || style == ViewContent || ShowsThumbnails(style);
}

IconBox ThumbnailBox() {
    if (Prefs.ThumbnailSize < 0 || Prefs.ThumbnailSize >= static_cast<std::int32_t>(ThumbnailBoxes.size())) {
        Prefs.ThumbnailSize = UsualThumbnail;
    }
    return ThumbnailBoxes[static_cast<std::size_t>(Prefs.ThumbnailSize)];
}

int TilesIconSide() {
    constexpr std::array Sides = {32, 64, 128, 256};
    const bool known = std::find(Sides.begin(), Sides.end(), Prefs.TilesIconSize) != Sides.end();
    return known ? Prefs.TilesIconSize : 64;
}

} // namespace solvane
