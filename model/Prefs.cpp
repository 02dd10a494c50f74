#include "model/Prefs.h"

namespace solvane {

PrefsRecord Prefs;
std::uint16_t PrefsExist = 0;
std::uint16_t NewOpenOnOwnScreen = 0;
std::int32_t SoundVolume = 64;
std::uint16_t CommodityInForce = 0;
std::uint16_t appShowInAmiDock = 1;

} // namespace solvane
