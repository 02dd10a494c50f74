#include "model/Content.h"

namespace solvane {

std::unique_ptr<GenericList<ContentNode>> ContentList;
std::unique_ptr<GenericList<LinksNode>> LinksList;
std::vector<ListRow> lblist2;
std::unique_ptr<GenericList<ColumnInfoNode>> ShowComputerColumnsList;
std::unique_ptr<GenericList<ColumnInfoNode>> ShowArchiveColumnsList;
std::unique_ptr<GenericList<ColumnInfoNode>> ShowDetailsColumnsList;
std::unique_ptr<GenericList<ContentNode>> ExamineSingleList;
ContentNode* ExamineSingleNode = nullptr;
std::unique_ptr<GenericList<DOSNode>> DOSList;

Text<1024> CurrentPath;
Text<1024> PathUndoBuffer;
LocationKind LBLocation = LocationKind::None;
std::uint32_t LBTop = 0;
std::uint16_t DoReload = 0;
std::uint64_t TotalBytes = 0;
std::uint64_t SelectedBytes = 0;
Text<15> TotalBytesBuffer;
Text<15> SelectedBytesBuffer;
std::uint32_t TotalNodes = 0;
std::int32_t NumSelected = 0;
std::uint16_t ActuallyZero = 0;
std::uint16_t AtFTPMount = 0;
std::uint16_t AtWHDLoadGamesRootDrawer = 0;
std::uint16_t ColInfo_GetDimensions = 0;
std::uint16_t ColInfo_GetMP3 = 0;
std::uint16_t ColInfo_GetVersion = 0;
std::uint16_t Changes = 0;

} // namespace solvane
