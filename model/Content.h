// Working state of the Content pane: the entries on show, the rows made from them, totals and selection.
// Written by content/ (scan, sort, rows) and by the loop of frame/; no behaviour of its own.
#pragma once

#include "model/ContentNode.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace solvane {

// Values of Prefs.ContentViewStyle and of the saved style of a tab.
enum ViewStyle : std::int32_t {
    ViewList = 0,
    ViewDetails = 1,
    ViewTiles = 2,
    ViewContent = 3,
    ViewThumbnail = 4,
    ViewThumbnailDetails = 5,
    ViewFilmstrip = 6,
    ViewIcons = 7,
};

// One row of the Content list browser. It names its record; the record keeps all texts.
struct ListRow {
    ContentNode* Record = nullptr; // null in the one empty row of an empty drawer
    std::uint32_t DrawerOrFile = 0;
};

// One picture of the filmstrip. What it shows is told by its record.
struct FilmstripNode {
    ContentNode* Record = nullptr;
    std::uint32_t FilmstripOffset = 0; // place of the record in ContentList
};

// One column of a Details view, shown or not.
struct ColumnInfoNode : ListNode {
    std::uint32_t ColumnNumber = 0;
    std::uint16_t Shown = 0;
    std::int32_t Width = 0; // pixels
};

// --- State: what is a reference belongs to the tab on show and is kept with it (WorkingSet) ---

extern std::unique_ptr<GenericList<ContentNode>>& ContentList; // entries on show; written by scan and sort
extern std::unique_ptr<GenericList<LinksNode>>& LinksList;     // links among them
extern std::vector<ListRow>& lblist2;             // rows in display order; written by BuildContentList
extern std::vector<FilmstripNode>& FilmstripList; // empty in other styles; written by BuildContentList
// The columns of the Details views, in the user's order; one list for each kind of location.
extern std::unique_ptr<GenericList<ColumnInfoNode>> ShowComputerColumnsList;
extern std::unique_ptr<GenericList<ColumnInfoNode>> ShowArchiveColumnsList;
extern std::unique_ptr<GenericList<ColumnInfoNode>> ShowDetailsColumnsList;
extern std::unique_ptr<GenericList<ContentNode>> ExamineSingleList; // the one record of ExamineSingle
extern ContentNode* ExamineSingleNode;                              // that record, or null
extern std::unique_ptr<GenericList<DOSNode>> DOSList;               // what DiscoverDrawersFiles found

extern Text<1024>& CurrentPath;    // the path on show
extern Text<1024>& PathUndoBuffer; // the path to return to when a typed one fails; written by SetCurrentPath
extern LocationKind& LBLocation;   // written by every routine that shows a location
extern std::uint32_t& LBTop;       // first visible row, kept over a reload
extern std::uint16_t DoReload;     // the running scan refreshes the same drawer: LBTop stays
extern std::uint64_t& TotalBytes;  // of all plain files in ContentList
extern std::uint64_t& SelectedBytes;
extern Text<15>& TotalBytesBuffer; // the two totals as texts
extern Text<15>& SelectedBytesBuffer;
extern std::uint32_t& TotalNodes;   // rows on show
extern std::int32_t& NumSelected;   // selected rows
extern std::uint16_t& ActuallyZero; // the one row on show stands for an empty drawer
extern std::uint16_t& AtFTPMount;   // CurrentPath lies on an FTP mount: nothing there is opened for its type
extern std::uint16_t& AtWHDLoadGamesRootDrawer;
extern std::uint16_t& WhichOS4Depot;        // 0 its recent index is on show, 1 the full one
extern std::uint16_t& WhichAminet;          // the same
extern std::uint16_t& IsLhAArchive;         // of the archive on show: LhA can change it
extern Text<128>& FTPMountSiteName;         // of the user's sites, the one that was entered last
extern std::uint16_t ColInfo_GetDimensions; // a shown Details column needs this datum; written by ColumnInfo
extern std::uint16_t ColInfo_GetMP3;
extern std::uint16_t ColInfo_GetVersion;
// The program itself has changed the drawer on show: the next notice of its watch is swallowed. Whoever ends
// that watch, or has another drawer watched, clears it.
extern std::uint16_t Changes;

} // namespace solvane
