// What a tab is: everything that changes when another tab is shown. The set of the active tab is live in
// ActiveSet; the others rest in their TabsNode. A switch moves whole sets and nothing else.
//
// A variable that tells something about the place on show belongs here. Modules that own such a variable
// declare it as a reference into ActiveSet, so that it goes with its tab by itself.
#pragma once

#include "model/Content.h"
#include "model/History.h"
#include "platform/intuition/Images.h"
#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/WishedImages.h"
#include "sak/GenericLists.h"
#include "sak/Notify.h"
#include "sak/Text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace solvane {

// The settings that each tab has for itself. While a tab is active they stand in Prefs.
struct TabSettings {
    std::int16_t WorkbenchSortDirection = 0, ComputerSortDirection = 0, AssignsSortDirection = 0;
    std::int16_t FTPSitesSortDirection = 0, SearchSortDirection = 0, ArchiveSortDirection = 0;
    std::int16_t ContentSortDirection = 0;
    std::int32_t ComputerDetailsCISortColumn = 1, FTPSitesDetailsCISortColumn = 1;
    std::int32_t ArchiveDetailsCISortColumn = 1, ContentDetailsCISortColumn = 1;
    std::int32_t BookmarksViewStyle = 1, FavoritesViewStyle = 1, WorkbenchViewStyle = 1;
    std::int32_t ComputerViewStyle = 1, AssignsViewStyle = 1, FTPSitesViewStyle = 1, ArchiveViewStyle = 1;
    std::int32_t ContentViewStyle = 1;

    bool operator==(const TabSettings&) const = default;
};

// The part of the set that can be copied: what a tab is without its rows.
struct TabValues {
    LocationKind Location = LocationKind::None; // LBLocation
    Text<1024> Path;                            // CurrentPath
    Text<1024> PathUndo;                        // PathUndoBuffer
    Text<1024> PathRead;                        // the drawer that ContentList was read from
    TabSettings Settings;                       // as they were when the tab was last left
    std::uint32_t LBTop = 0;
    std::int32_t NumConSel = 0; // NumSelected
    std::uint32_t TotalNodes = 0;
    std::uint16_t ActuallyZero = 0;
    std::uint64_t TotalBytes = 0, SelectedBytes = 0;
    Text<15> TotalBytesBuffer, SelectedBytesBuffer;
    std::uint16_t AtFTPMount = 0, AtWHDLoadGamesRootDrawer = 0;
    std::uint16_t WhichOS4Depot = 0, WhichAminet = 0;
    std::uint16_t IsLhAArchive = 0;
    Text<128> FTPMountSiteName;
    std::array<Text<128>, 8> Details; // Details1Buffer to Details8Buffer; the ninth is no tab's own
    Text<1024> AwaitedVolume;         // whose figures are still to come into Details; empty: none
    std::int32_t GaugeLevel = -1;     // of the Details pane, in per cent; -1: none
    Text<128> StatusBar1, StatusBar2;
    std::int32_t HistorySelected = -1; // index of the current entry from the head; -1: not yet started
};

struct WorkingSet : TabValues {
    std::unique_ptr<GenericList<HistoryNode>> HistoryList; // newest first
    HistoryNode* CurrentHistory = nullptr;                 // the entry on show, in HistoryList
    std::unique_ptr<GenericList<LinksNode>> LinksList;
    std::unique_ptr<GenericList<ContentNode>> ContentList;
    std::vector<ListRow> lblist2; // in display order; they name records of the set's lists
    std::vector<FilmstripNode> FilmstripList;
    // Draws lblist2, and knows the pictures that were looked up for it. Attached while the tab is on show.
    std::unique_ptr<intuition::ListSource> RowSource;
    // Selection and focus mark of the rows while the tab is not on show; then the list browser has them.
    std::vector<std::size_t> SelectedRows;
    std::size_t CurrentRow = intuition::NoRow;
    intuition::HeldImage DetailsPicture; // beside the texts of the Details pane
    // Where that picture may come from while it is still awaited, and the number of the wish for it.
    std::vector<intuition::ImageStep> DetailsPictureSteps;
    std::size_t DetailsPictureWish = 0;
    KeptNotify Monitor; // the drawer's watch while the tab is not on show
};

// --- State ---

extern WorkingSet ActiveSet; // of the tab on show; moved by locations/TabRecords, else written field by field

} // namespace solvane
