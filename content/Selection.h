// The selection of the Content list between its rows and the records. The list browser owns it while the user
// works; the records get it when an operation needs it.
#pragma once

#include "model/ContentNode.h"

#include <string>
#include <unordered_set>

namespace solvane {

// Which entries were selected, told apart from the records that a scan replaces. Names count byte for byte.
struct KeptSelection {
    std::unordered_set<std::string> Entries; // name behind its kind
};

// Copies the selection from the rows to the records and counts NumSelected. Without a window the records keep
// what they have.
void SelectContentListItems();

// The reverse: selects the row of each record with the selected flag, and counts NumSelected.
void HighlightContentListItems();

// Takes the selection out of rows and records.
void ClearSelectedFiles();

[[nodiscard]] KeptSelection NoteSelection();
void RestoreSelection(const KeptSelection& selection);

} // namespace solvane
