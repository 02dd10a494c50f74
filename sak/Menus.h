// Menus of the program as the toolbox sees them: attributes by the number of the item.
#pragma once

#include "platform/intuition/Menus.h"

#include <initializer_list>

namespace solvane {

// Gives the items their attributes; nothing without a menu.
inline void SAK_SetMenuAttrs(intuition::Menu* menu, std::initializer_list<intuition::MenuAttrs> items) {
    if (menu == nullptr) {
        return;
    }
    for (const intuition::MenuAttrs& item : items) {
        menu->SetAttrs(item);
    }
}

} // namespace solvane
