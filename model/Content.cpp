#include "model/Content.h"

namespace solvane {

std::unique_ptr<GenericList<ColumnInfoNode>> ShowComputerColumnsList;
std::unique_ptr<GenericList<ColumnInfoNode>> ShowArchiveColumnsList;
std::unique_ptr<GenericList<ColumnInfoNode>> ShowDetailsColumnsList;
std::unique_ptr<GenericList<ContentNode>> ExamineSingleList;
ContentNode* ExamineSingleNode = nullptr;
std::unique_ptr<GenericList<DOSNode>> DOSList;

std::uint16_t DoReload = 0;
std::uint16_t ColInfo_GetDimensions = 0;
std::uint16_t ColInfo_GetMP3 = 0;
std::uint16_t ColInfo_GetVersion = 0;
std::uint16_t Changes = 0;

} // namespace solvane
