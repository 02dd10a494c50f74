#include "model/Prefs.h"

namespace solvane {

PrefsRecord Prefs;
std::uint16_t PrefsExist = 0;

} // namespace solvane
