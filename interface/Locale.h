// The language of the program: which catalog is open, and what else hangs on it.
#pragma once

namespace solvane {

// Opens the catalog of SAK_PreferredLanguage, or of the user's own language, in place of one that is open,
// takes the texts over that others keep, and has the toolkit and console windows speak it. Needs the file
// system, no display; shows nothing.
void SetupLocale();

} // namespace solvane
