// Objects that the user drops on the window or on the icon that stands for it.
#pragma once

#include "platform/exec/Ports.h"

#include <string>
#include <vector>

namespace solvane {

// Brings objects that were dropped into the drawer on show, by way of the clipboard, whose content goes; the
// user is told where that cannot be.
void AppMsgFunc(const std::vector<std::string>& objects);

// Serves all messages of an icon's port and replies them. True when the user wants the program itself: a
// program that is an icon has then left it.
[[nodiscard]] bool AppIconMsg(exec::MsgPort& port);

} // namespace solvane
