// Opening what stands in the Content pane: places and drawers here, in tabs or in windows, as the keys held
// want it, and files by what opens their kind. Before more than 20 at once the user is asked.
#pragma once

#include "model/ContentNode.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace solvane {

// --- State ---

extern std::uint16_t OpenArchiveInNewTab; // Control was held when a file was opened

// --- Functions ---

// Of a file: it alone, or all selected files.
enum class OpenWhich { ThisOne, Selected };

// What a double click on a row does. With a Shift key held, all selected files.
void OpenRow(std::size_t row);

// What Return does: opens the selected rows, all files among them when the first is one.
void OpenSelectedRows();

// Opens each selected place or drawer in a tab or a window of its own.
void OpenSelectedInTabs();
void OpenSelectedInWindows();

// Opens the entry of the location on show. Alt opens windows, Control tabs; with several rows selected each
// place or drawer among them. The records must have the selection.
void OpenRecord(const ContentNode& node, OpenWhich files);

// Runs or opens a file, by the default tool of its icon or the host's program for its type; path is quoted,
// as it stands in a command line. That nothing opens the file is not told, which is intended.
void HandleDoubleClick(std::string_view path);

// Opens the guide with the host's program for texts; what prevents that is told.
void ShowGuide();

} // namespace solvane
