// Where the host keeps the drawers of this user. Private to platform/dos.
#pragma once

#include <string>

namespace dos {

// The absolute host path that the environment variable has, without a final "/"; otherwise where it is not
// set or has another value, as the rule for these variables wants it.
[[nodiscard]] std::string DrawerFromEnvironment(const char* name, const std::string& otherwise);

// The user's home. Empty when neither the environment nor the host knows one.
[[nodiscard]] std::string HomeOfUser();

} // namespace dos
