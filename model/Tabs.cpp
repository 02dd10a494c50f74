#include "model/Tabs.h"

namespace solvane {

std::unique_ptr<GenericList<TabsNode>> TabsList;
std::unique_ptr<GenericList<ClickTabNode>> tabslist;
ClickTabNode* currTab = nullptr;
TabsNode* ActiveTab = nullptr;
std::uint32_t TabID = 0;
std::uint32_t FirstTabID = 0;
std::uint32_t TabsOpen = 0;
std::uint16_t TabClosed = 0;
std::uint16_t IsNewTab = 0;

} // namespace solvane
