// Giving entries of the Content pane other names, one at a time; several selected ones come with the other
// operations on entries.
#pragma once

#include "model/ContentNode.h"

#include <string_view>

namespace solvane {

// Whether the list is sorted and built anew after it, with the selection but for the renamed entry. Who has
// edited the name in its row shows it himself.
enum class ShowAnew { Yes, No };

// Renames the entry oldName of the drawer on show, its record included; with Prefs.ProcessInfoFiles its icon
// follows, unless the new name has one. False when there is no such entry; false too, and told, when it could
// not be renamed, when newName is no plain name, and when two entries are called oldName, as in a
// multi-assign.
bool RenameFiles(std::string_view oldName, std::string_view newName, ShowAnew show = ShowAnew::Yes);

// Asks for a new name of the entry that is selected alone in the drawer on show, until there is one that no
// other object has or the user gives up, and renames it so. Nothing elsewhere.
void RenameSelectedEntry();

// Whether another object of that kind, a drawer or a file, has the name in the drawer on show. What is no
// plain name counts as free: the renaming itself refuses it.
[[nodiscard]] bool NameIsTaken(EntryKind kind, const Text<128>& name);

} // namespace solvane
