// The ARexx scripts that the user can pick from menus.
#pragma once

namespace solvane {

// Lists the plain files of "ARexx" in the program's drawer, and those of "REXX:" where the preferences want
// them, into ARexxList, sorted by name. False when a drawer cannot be read; what was found stays as it was
// read.
[[nodiscard]] bool DiscoverARexxScripts();

// Puts ARexxList in order by the names of the scripts.
void SortARexxList();

} // namespace solvane
