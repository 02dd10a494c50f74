// The language of the program: which catalog is open, and what else hangs on it.
#pragma once

namespace solvane {

// Opens the catalog of SAK_PreferredLanguage, or of the user's own language, in place of one that is open,
// and takes the texts over that others keep. Needs the file system; shows nothing.
void SetupLocale();

} // namespace solvane
