// The program's own icon.
#pragma once

#include "platform/icon/Icon.h"

#include <optional>
#include <string_view>

namespace solvane {

// The icon of the program with that file name in that drawer, or of the drawer itself, wherever a start from
// the desktop may have left it; icons of other types than programs do not count. Nothing when there is none.
[[nodiscard]] std::optional<icon::DiskObject> SAK_GetProgramIcon(std::string_view name,
                                                                 std::string_view drawer);

} // namespace solvane
