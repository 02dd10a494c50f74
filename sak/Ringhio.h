// Notices that close a command. Whether the user wants them is asked by the caller.
#pragma once

#include <cstdint>
#include <string_view>

namespace solvane {

inline constexpr std::uint32_t RinghioAnswer = 300; // what every notice answers

// Posts a notice with title, text (cut at 255 bytes), placement ("FRONT"), the path of an image and an extra
// text. There is no way to the desktop's notices yet, so nothing is shown.
std::uint32_t RinghioMessage(std::string_view title, std::string_view text, std::string_view placement,
                             std::string_view image, std::string_view extra);

} // namespace solvane
