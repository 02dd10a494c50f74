// The question for a missing volume, as the path walk asks it. Private to platform/dos.
#pragma once

#include <string_view>

namespace dos {

// Asks the hook of SetVolumeRequest, where the calling thread may; true means look again. IoErr
// stays 218.
[[nodiscard]] bool RequestVolume(std::string_view volume);

} // namespace dos
