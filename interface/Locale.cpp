#include "interface/Locale.h"

namespace solvane {

void SetupLocale() {}

void SAK_LocaleClose() {}

} // namespace solvane
