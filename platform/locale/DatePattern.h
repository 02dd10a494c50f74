// Translates the date patterns of the host's locale data ("dddd, d. MMMM yyyy") into FormatDate
// codes. Private to platform/locale.
#pragma once

#include <string>
#include <string_view>

namespace locale {

// Names of days and months become the short ones. Fields that FormatDate has no code for (zone
// name, milliseconds) are left out together with what frames them.
[[nodiscard]] std::string CodesFromPattern(std::string_view pattern);

} // namespace locale
