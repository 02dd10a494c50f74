// The status bar's texts for a drawer: how many entries are selected of how many, and their bytes.
#pragma once

namespace solvane {

// "2/12 Selected | 3.00 KB / 1.20 MB" on the left, "12 items" on the right, from the totals as they stand.
void ShowContentStatus();

// The same for a list whose entries have no sizes: "0/12 Selected".
void ShowCountStatus();

// ShowContentStatus for a drawer that was entered by its path: without a selection and without the total
// bytes, which such a drawer shows only after its first reload or selection. Intended.
void ShowEnteredPathStatus();

// Forms SelectedBytes and TotalBytes and their texts anew from the records and their selected flags.
void RefreshBytes();

// The same for SelectedBytes and its text alone: TotalBytes of a multi-assigned drawer are those of its scan.
void RefreshSelectedBytes();

} // namespace solvane
