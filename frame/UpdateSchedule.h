// Decides when the program asks for a newer version of itself.
#pragma once

#include <cstdint>

namespace solvane {

// Asks when the last time lies a day, a week or a month back, as the preferences say, and notes the new time.
void CheckForUpdates();

// Seconds between two checks for a value of Prefs.UpdateFrequency.
[[nodiscard]] std::uint32_t UpdateInterval(std::int32_t frequency);

} // namespace solvane
