// The catalog of the user's language. All texts are the built-in English ones until catalogs come.
#pragma once

namespace solvane {

void SetupLocale();
void SAK_LocaleClose();

} // namespace solvane
