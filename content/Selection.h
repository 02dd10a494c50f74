// The selection of the Content list between its rows and the records. The list browser owns it while the user
// works; the records get it when an operation needs it.
#pragma once

#include "model/ContentNode.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace solvane {

// Which entries were selected, told apart from the records that a scan replaces. Names count byte for byte;
// of entries with the same name, as the drawers of a multi-assign may have them, each counts by its place
// among them.
struct KeptSelection {
    std::unordered_map<std::string, std::vector<std::uint32_t>> Entries; // by kind and name: which, from 0 on
};

// Copies the selection from the rows to the records and counts NumSelected. Without a window the records keep
// what they have.
void SelectContentListItems();

// The reverse: selects the row of each record with the selected flag, and counts NumSelected.
void HighlightContentListItems();

// The entry that is selected alone, as SelectContentListItems has left it; null for none or several. Asks the
// rows, as a walk over the records of a long list takes a user's click some milliseconds.
[[nodiscard]] ContentNode* OnlySelectedEntry();

// Takes the selection out of rows and records.
void ClearSelectedFiles();

// What is selected now. The records have the selection of the rows afterwards, and NumSelected its count.
[[nodiscard]] KeptSelection NoteSelection();

// Selects the entries with a row that the selection names, in records and rows, and adds nothing for those
// that are gone. Forms NumSelected and SelectedBytes; TotalBytes stay those of the scan. An empty selection
// changes nothing.
void RestoreSelection(const KeptSelection& selection);

} // namespace solvane
