// The ARexx scripts that the user can pick from menus.
#pragma once

namespace solvane {

// Lists the plain files of "ARexx" in the program's drawer, and those of "REXX:" where the preferences want
// them, into ARexxList in directory order. False when a drawer cannot be read; what was found stays.
[[nodiscard]] bool DiscoverARexxScripts();

} // namespace solvane
