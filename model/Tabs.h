// The tabs of a window: their records, and the row of the tab bar that each has. Written by locations/.
#pragma once

#include "model/WorkingSet.h"
#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>

namespace solvane {

// User data of the extra tab at the end of the bar, which becomes a real one when it is chosen. Identifiers
// of tabs begin at 5, so that the numbers below stay free for marks.
inline constexpr std::uint32_t ExtraTab = 1;
inline constexpr std::uint32_t SmallestTabID = 5, TabIDs = 50000;

// One tab with what it shows. That of the active tab is in ActiveSet: here stand its values as they were when
// it was last saved, and none of its lists.
struct TabsNode : ListNode, WorkingSet {
    std::uint32_t TabNumber = 0;   // as it was given when the tab was made
    std::uint32_t TabUserData = 0; // identifier of the tab; ExtraTab for the extra one
    std::uint16_t RescanTab = 0;   // its rows are out of date: to be read anew when it is shown
};

// One tab of the bar. Its record is found by the user data.
struct ClickTabNode : ListNode {
    std::uint32_t TabNumber = 0;
    std::uint32_t TabUserData = 0;
    Text<128> Label;
};

// --- State ---

extern std::unique_ptr<GenericList<TabsNode>> TabsList;
extern std::unique_ptr<GenericList<ClickTabNode>> tabslist; // the bar, the extra tab last
extern ClickTabNode* currTab;                               // the tab of the bar that is on show; null: none
extern TabsNode* ActiveTab;      // whose set is in ActiveSet; null before the first, or when it is closed
extern std::uint32_t TabID;      // for the next new tab
extern std::uint32_t FirstTabID; // of the first one made
extern std::uint32_t TabsOpen;   // tabs of the bar, the extra one counted
extern std::uint16_t TabClosed;  // the active tab must not be saved by the next switch
extern std::uint16_t IsNewTab;   // the switch under way opens a new tab

} // namespace solvane
