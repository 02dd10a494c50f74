#include "model/WorkingSet.h"

namespace solvane {

WorkingSet ActiveSet;

// The names under which the program knows the fields.
std::unique_ptr<GenericList<ContentNode>>& ContentList = ActiveSet.ContentList;
std::unique_ptr<GenericList<LinksNode>>& LinksList = ActiveSet.LinksList;
std::vector<ListRow>& lblist2 = ActiveSet.lblist2;
std::vector<FilmstripNode>& FilmstripList = ActiveSet.FilmstripList;
Text<1024>& CurrentPath = ActiveSet.Path;
Text<1024>& PathUndoBuffer = ActiveSet.PathUndo;
LocationKind& LBLocation = ActiveSet.Location;
std::uint32_t& LBTop = ActiveSet.LBTop;
std::uint64_t& TotalBytes = ActiveSet.TotalBytes;
std::uint64_t& SelectedBytes = ActiveSet.SelectedBytes;
Text<15>& TotalBytesBuffer = ActiveSet.TotalBytesBuffer;
Text<15>& SelectedBytesBuffer = ActiveSet.SelectedBytesBuffer;
std::uint32_t& TotalNodes = ActiveSet.TotalNodes;
std::int32_t& NumSelected = ActiveSet.NumConSel;
std::uint16_t& ActuallyZero = ActiveSet.ActuallyZero;
std::uint16_t& AtFTPMount = ActiveSet.AtFTPMount;
std::uint16_t& AtWHDLoadGamesRootDrawer = ActiveSet.AtWHDLoadGamesRootDrawer;
std::uint16_t& WhichOS4Depot = ActiveSet.WhichOS4Depot;
std::uint16_t& WhichAminet = ActiveSet.WhichAminet;
std::uint16_t& IsLhAArchive = ActiveSet.IsLhAArchive;
Text<128>& FTPMountSiteName = ActiveSet.FTPMountSiteName;

std::unique_ptr<GenericList<HistoryNode>>& HistoryList = ActiveSet.HistoryList;
HistoryNode*& CurrentHistory = ActiveSet.CurrentHistory;
std::int32_t& HistorySelected = ActiveSet.HistorySelected;

} // namespace solvane
