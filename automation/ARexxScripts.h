// The ARexx scripts that the user can pick from menus, and running a script. Each runs in a process of its
// own and sends its commands to this instance.
#pragma once

#include <cstdint>
#include <string_view>

namespace solvane {

// Lists the plain files of "ARexx" in the program's drawer, and those of "REXX:" where the preferences want
// them, into ARexxList, sorted by name; ".info" files belong to another file and are left out. False when a
// drawer cannot be read or memory is short, which is told; what was found all the same is listed.
bool DiscoverARexxScripts();

// Puts ARexxList in order by the names of the scripts.
void SortARexxList();

// Starts the script at path and returns at once; nothing for an empty path. What it says is lost; that it
// could not be started is told.
void ExecuteARexxScript(std::string_view path);

// The same for the script at that place in ARexxList; nothing where there is none.
void ExecuteListedScript(std::uint32_t index);

// Lets the user choose a script and starts it.
void ExecuteARexxScriptSelect();

} // namespace solvane
