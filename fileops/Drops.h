// Objects that the user drops on the window or on the icon that stands for it.
#pragma once

#include "platform/exec/Ports.h"

#include <cstdint>
#include <string>
#include <vector>

namespace solvane {

// Objects that were dropped are for the drawer on show. The user is told that there is none, or that pasting
// them comes later.
void AppMsgFunc(const std::vector<std::string>& objects);

// What objects mean that are dropped on an icon: they are for the drawer on show, or whoever drops them wants
// the program.
enum class IconDrop : std::uint8_t { IntoDrawer, Opens };

// Serves all messages of an icon's port and replies them. True when the user wants the program itself: a
// program that is an icon has then left it.
[[nodiscard]] bool AppIconMsg(exec::MsgPort& port, IconDrop drop);

} // namespace solvane
