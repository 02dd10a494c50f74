// The context menus: for each kind of place one for what lies beside the rows and one for a row, and a pair
// for the Navigation pane. Their items are items of the strip, with its numbers and states, and few of their
// own.
#pragma once

#include "platform/intuition/Menus.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace solvane {

struct ContextMenus {
    using Object = std::unique_ptr<intuition::Menu>;
    Object NavigationContextMenuObj, NavContextMenuObj;
    Object BookmarksContextMenuObj, BkmContextMenuObj;
    Object FavoritesContextMenuObj, FavContextMenuObj;
    Object WorkbenchContextMenuObj, WBContextMenuObj;
    Object ComputerContextMenuObj, DevContextMenuObj;
    Object AssignsContextMenuObj, AssContextMenuObj;
    Object FTPSitesContextMenuObj, FTPContextMenuObj;
    Object OS4DepotContextMenuObj, OS4ContextMenuObj;
    Object AminetContextMenuObj, AmiContextMenuObj;
    Object SearchContextMenuObj, SeaContextMenuObj;
    Object DuplicateContextMenuObj, DupContextMenuObj;
    Object ArchiveContextMenuObj, ArcContextMenuObj;
    Object ContentContextMenuObj, ConContextMenuObj;
};

// What the rows on show can be sorted by.
struct SortChoices {
    std::vector<std::string> Columns; // by the number of the column; an empty one is not offered
    std::size_t Column = 0;           // the present one
    bool IsDescending = false;
};

// Where a context menu was asked for.
struct MenuRequest {
    std::uint16_t Gadget = 0;
    int Left = 0, Top = 0; // inside the window
    bool OnRow = false;    // on one of the gadget's rows, not beside them
};

// --- State ---

extern ContextMenus ContextMenuObjects; // all null before CreateContextMenus
extern intuition::Menu* MenuAddress;    // which of them was popped up last; null: none

// --- Functions ---

// Makes them anew, as CreateMainMenuStrip makes the strip.
[[nodiscard]] bool CreateContextMenus();
void FreeContextMenus();

// Pops up the menu of what lies under the pointer, with the state of this moment.
void ContextMenuHandlerFunc(const MenuRequest& request, const SortChoices& sorting);

} // namespace solvane
