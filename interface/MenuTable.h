// The items of the menu strip as one table, and the makers of menu items that strip and context menus share.
#pragma once

#include "interface/MenuIds.h"
#include "platform/intuition/Menus.h"

#include <initializer_list>
#include <string_view>
#include <vector>

namespace solvane {

// The heads of the strip with all items that are always there.
[[nodiscard]] std::vector<intuition::MenuItem> StripItems();

// Items of the strip, as they stand there with what is under them; MenuNone is a line.
[[nodiscard]] std::vector<intuition::MenuItem> ItemsOfStrip(std::initializer_list<MenuId> items);

// A further item.
[[nodiscard]] intuition::MenuItem ItemWithText(MenuId id, std::string_view text);

// Kinds of files, in the order of their groups.
[[nodiscard]] std::vector<intuition::MenuItem> TypeItems();

// Pixels, as the preferences want them.
[[nodiscard]] int MenuImageSide();

} // namespace solvane
