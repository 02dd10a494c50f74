// Giving entries of the Content pane other names. Only a named entry can be renamed yet; asking for the names
// of the selected ones comes with the other operations on single entries.
#pragma once

#include <string_view>

namespace solvane {

// Whether the list is sorted and built anew after it. Who has edited the name in its row shows it himself.
enum class ShowAnew { Yes, No };

// Renames the entry oldName of the drawer on show, its record included; with Prefs.ProcessInfoFiles its icon
// follows, unless the new name has one. False when there is no such entry; false too, and told, when it could
// not be renamed, when newName is no plain name, and when two entries are called oldName, as in a
// multi-assign.
bool RenameFiles(std::string_view oldName, std::string_view newName, ShowAnew show = ShowAnew::Yes);

} // namespace solvane
