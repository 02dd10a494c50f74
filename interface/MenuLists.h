// Menu items for what comes and goes: devices, tabs, scripts, sites, places. Their labels are names and get
// no keys.
#pragma once

#include "interface/MenuIds.h"
#include "platform/intuition/Menus.h"

#include <vector>

namespace solvane {

// Of at most MostListItems each, numbered from first on.
[[nodiscard]] std::vector<intuition::MenuItem> DeviceItems(MenuId first); // the mounted ones
[[nodiscard]] std::vector<intuition::MenuItem> BookmarkItems(MenuId first);
[[nodiscard]] std::vector<intuition::MenuItem> FavoriteItems(MenuId first);
[[nodiscard]] std::vector<intuition::MenuItem> ScriptItems();
[[nodiscard]] std::vector<intuition::MenuItem> SiteItems(); // none where no site can be mounted

// Puts the list in that stands alone under a head: tabs, user buttons, places to paste to. It cannot be
// opened while that is empty.
void FillHeadList(intuition::Menu& menu, MenuId head);
// The same for all such heads that the menu has.
void FillHeadLists(intuition::Menu& menu);

} // namespace solvane
