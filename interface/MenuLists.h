// Menu items for what comes and goes: devices, tabs, scripts, sites, places. Their labels are names and get
// no keys.
#pragma once

#include "interface/MenuIds.h"
#include "interface/PlaceItems.h"
#include "platform/intuition/Menus.h"

#include <vector>

namespace solvane {

// Of at most MostListItems each, numbered from first on.
[[nodiscard]] std::vector<intuition::MenuItem> DeviceItems(MenuId first); // the mounted ones
[[nodiscard]] std::vector<intuition::MenuItem> PlaceMenuItems(const std::vector<PlaceItem>& places,
                                                              MenuId first);
[[nodiscard]] std::vector<intuition::MenuItem> ScriptItems();
[[nodiscard]] std::vector<intuition::MenuItem> SiteItems(); // none where no site can be mounted
[[nodiscard]] std::vector<intuition::MenuItem> UserButtonItems();
// The first ten tabs of the bar.
[[nodiscard]] std::vector<intuition::MenuItem> TabItems();

} // namespace solvane
