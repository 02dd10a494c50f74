// Context menus: which one the user asks for, and what the rows on show can be sorted by.
#pragma once

#include "platform/intuition/Events.h"

namespace solvane {

// Pops up the menu that an event asks for; nothing for places without one.
void ServeMenuVerify(const intuition::WindowEvent& event);

} // namespace solvane
