// Notices that close a command, shown by the user's desktop. Nothing is shown unless the preferences want
// notices and the program is registered.
#pragma once

#include "platform/exec/Tasks.h"

#include <cstdint>
#include <string_view>

namespace solvane {

inline constexpr std::uint32_t RinghioAnswer = 300; // what every notice answers

// The way to the desktop, from registration to its end. The signal is set when the user has picked a notice
// with the placement "FRONT": the window is to come to the front. 0 when no signal was free.
exec::SignalMask OpenNotices();
void CloseNotices();

// Posts a notice with title, text (cut at 255 bytes), placement ("FRONT"), the path of an image and an extra
// text that follows the first on a line of its own.
std::uint32_t RinghioMessage(std::string_view title, std::string_view text, std::string_view placement,
                             std::string_view image, std::string_view extra);

} // namespace solvane
