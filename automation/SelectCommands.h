// The commands that select entries of the Content pane, from menus, keys and scripts.
#pragma once

#include <cstdint>
#include <string_view>

namespace solvane {

// All rows, none, and those that were not selected before. Drives without a disk are left alone.
void SelectAll();
void SelectNone();
void ToggleSelection();

// Selects the entries of a datatype group below 9, icons aside; nothing where entries have no types, as the
// volumes of the Workbench. With a Shift key held at the last event the selection before stays.
void SelectByType(std::uint32_t group);

// Adds the entries whose names match the AmigaDOS pattern, in which "*" is "#?", to the selection; an empty
// text asks the user for it. A bad pattern is told. Acts where entries have names of their own: drawers, the
// Workbench but for its volumes, archives, what is online.
void Pattern(std::string_view text, bool caseSensitive);

// Adds one entry to the selection, a drawer (or link to one) or a file, at the same places. The exact name is
// preferred to one that differs in case.
enum class EntrySort { Drawer, File };
void SelectEntry(std::string_view name, EntrySort sort);

} // namespace solvane
