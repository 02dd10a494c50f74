#include "content/SortLists.h"

#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/EntryTexts.h"
#include "content/PlaceRows.h"
#include "content/Selection.h"
#include "content/SortKeys.h"
#include "content/ViewStyles.h"
#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>
#include <vector>

namespace solvane {

std::int32_t SortDirection = 0;

namespace {

constexpr auto NameColumn = static_cast<std::int32_t>(DetailsColumn::Name);

// How one location is sorted. A location without a row here brings its own list.
struct SortedLocation {
    LocationKind Location;
    std::int16_t PrefsRecord::*Direction;
    std::int32_t PrefsRecord::*Column; // null: one key, whose every choice turns the direction round
    void (*Sort)(std::int32_t direction);
    bool HasPrefixes; // drawers and files are told apart before the name
};

constexpr std::array Locations = {
    SortedLocation{LocationKind::Workbench, &PrefsRecord::WorkbenchSortDirection,
                   &PrefsRecord::ContentDetailsCISortColumn, SortWorkbenchList, false},
    SortedLocation{LocationKind::Computer, &PrefsRecord::ComputerSortDirection,
                   &PrefsRecord::ComputerDetailsCISortColumn, SortDevicesList, false},
    SortedLocation{LocationKind::Assigns, &PrefsRecord::AssignsSortDirection, nullptr, SortAssignsList,
                   false},
    SortedLocation{LocationKind::Drawer, &PrefsRecord::ContentSortDirection,
                   &PrefsRecord::ContentDetailsCISortColumn, SortContentList, true},
};

const SortedLocation* SortedLocationOnShow() {
    const auto* found = std::find_if(Locations.begin(), Locations.end(), [](const SortedLocation& candidate) {
        return candidate.Location == LBLocation;
    });
    return found != Locations.end() ? found : nullptr;
}

DetailsColumn SortColumnInForce() {
    const bool details = IsDetailsStyle(ViewStyleInForce());
    return details ? static_cast<DetailsColumn>(Prefs.ContentDetailsCISortColumn) : DetailsColumn::Name;
}

std::int32_t ColumnInForce(const SortedLocation& location) {
    const bool isDetails = location.Column != nullptr && IsDetailsStyle(ViewStyleInForce());
    return isDetails ? Prefs.*location.Column : NameColumn;
}

// What has one key alone takes any column.
bool CanSortBy(const SortedLocation& location, std::int32_t column) {
    const auto columns = SortColumnsOnShow();
    return column == SameColumn || location.Column == nullptr ||
           std::ranges::find(columns, column, &SortColumn::Number) != columns.end();
}

// Takes the choice over into the preferences. True when the direction was turned round.
bool TakeSortChoice(const SortedLocation& location, std::int32_t column) {
    const bool isDetails = location.Column != nullptr && IsDetailsStyle(ViewStyleInForce());
    const bool toggled =
        location.Column == nullptr || column == SameColumn || column == ColumnInForce(location);
    if (toggled) {
        Prefs.*location.Direction = Prefs.*location.Direction == 0 ? 1 : 0;
    }
    if (isDetails && column != SameColumn) {
        Prefs.*location.Column = column;
    }
    return toggled;
}

// Sorts what is on show and builds its rows anew, selection and place kept.
void SortAndRebuild(const SortedLocation& location) {
    NoteTopRow();
    SelectContentListItems();
    FreeContentRows();
    location.Sort(Prefs.*location.Direction);
    BuildContentList();
    HighlightContentListItems();
}

} // namespace

void SortContentList(std::int32_t direction) {
    if (ContentList) {
        SAK_SortGenericListBy(*ContentList, [direction](std::vector<ContentNode*>& nodes) {
            OrderByKey(nodes, SortColumnInForce(), SortOrderOf(direction));
        });
    }
}

void SortWorkbenchList(std::int32_t direction) {
    SortContentList(direction);
}

void SortDOSList() {
    if (DOSList) {
        SAK_SortGenericList(*DOSList, SortOrder::Ascending, ByText(&DOSNode::EntryPath));
    }
}

void SortBy(std::int32_t column) {
    const SortedLocation* location = SortedLocationOnShow();
    if (location == nullptr || !CanSortBy(*location, column)) {
        return;
    }
    BlockMainWindow(1);
    const bool toggled = TakeSortChoice(*location, column);
    if (toggled || !location->HasPrefixes) {
        SortDirection = Prefs.*location->Direction;
    }
    if (toggled && location->HasPrefixes) {
        ReverseContentSortNameType();
    }
    SortAndRebuild(*location);
    BlockMainWindow(0);
    SavePrefs(0);
}

void SortAnew() {
    if (const SortedLocation* location = SortedLocationOnShow()) {
        SortAndRebuild(*location);
    }
}

std::optional<SortInForce> SortOnShow() {
    const SortedLocation* location = SortedLocationOnShow();
    if (location == nullptr) {
        return std::nullopt;
    }
    return SortInForce{ColumnInForce(*location), Prefs.*location->Direction};
}

std::vector<SortColumn> SortColumnsOnShow() {
    const SortedLocation* location = SortedLocationOnShow();
    if (location == nullptr) {
        return {};
    }
    const std::int32_t style = ViewStyleInForce();
    if (location->Column == nullptr || !IsDetailsStyle(style)) {
        return {{NameColumn, MSG_NAME}};
    }
    const ColumnSet set = ColumnSetOf(LBLocation, style);
    const auto columns = InfoOf(set).Columns;
    std::vector<SortColumn> found;
    for (const DetailsColumn shown : ShownColumns(set)) {
        const auto number = static_cast<std::size_t>(shown);
        if (number < columns.size() && columns[number].Title != 0) {
            found.push_back({static_cast<std::int32_t>(shown), columns[number].Title});
        }
    }
    return found;
}

void DrawersOrder() {
    const SortedLocation* location = SortedLocationOnShow();
    SavePrefs(0);
    UpdateMenus_ViewMisc();
    if (location == nullptr || !location->HasPrefixes) {
        return;
    }
    BlockMainWindow(1);
    ReverseContentSortNameType();
    SortAndRebuild(*location);
    BlockMainWindow(0);
}

void ReverseContentSortNameType() {
    if (!ContentList) {
        return;
    }
    for (ContentNode& node : *ContentList) {
        if (node.EntryName.Empty()) {
            continue; // the blank row of an object that is neither drawer nor file
        }
        node.SortPrefix = SortPrefixOf(node.ObjectKind);
        if (SortDirection != 0 && node.SortPrefix != ' ') {
            node.SortPrefix = node.SortPrefix == '0' ? '1' : '0';
        }
    }
}

} // namespace solvane
