// The columns of the Content list on screen: which ones of its set, how wide, and the arrow of the sort
// column. The user's choices live in the set's list or in the preferences; the list browser's columns are
// made from them.
#pragma once

#include "content/ColumnSets.h"
#include "content/SortKeys.h"

#include <cstdint>
#include <vector>

namespace solvane {

// --- State: written by SetColumnInfo ---

extern ColumnSet WhichCI;                        // the set on screen
extern GenericList<ColumnInfoNode>* WhichCIList; // its list; null where it has none
extern std::size_t NumberOfColumns;              // on screen, the icon's counted
extern std::size_t DetailsNameColumnNum;         // index of the name's column in the list browser

// --- Functions ---

// Fills the column lists with all columns in their default order and width, the usual ones shown.
void RestoreDefaultColumnInfos();

// Makes sure that there are column lists, and notes which facts a scan must collect for the shown columns.
// False when a record cannot be made.
[[nodiscard]] bool CreateColumnInfoAll();
void FreeColumnInfoAll();

// Columns of the preview's lists; they come with the preview.
[[nodiscard]] bool CreateColumnInfoPreview();
void FreeColumnInfoPreview();

// True for the styles that have one column per datum.
[[nodiscard]] bool IsDetailsStyle(std::int32_t style);

// What each column of the list browser shows in that set, from the first on: the column's number, for an
// entry of a drawer the datum. In the Content style the third one is its second label.
[[nodiscard]] std::vector<DetailsColumn> ShownColumns(ColumnSet set);

// Gives the open window's list browser the columns of the style in force; a new window has none.
void SetColumnInfo();

// True when the columns that SetColumnInfo has set last are those of the style in force.
[[nodiscard]] bool ColumnsAreInForce();

// What the columns show that SetColumnInfo has set last, by the list browser's index.
[[nodiscard]] const std::vector<DetailsColumn>& ColumnsInForce();

// Takes the list browser's present order over into WhichCIList, and the widths of those columns that are not
// as wide as SetColumnInfo or the last call found them, there or into the preferences; no widths while
// columns fit themselves (Prefs.AutoFitColumns).
void GetColumnInfoWidths();

// Makes the columns fit what their rows now show, where the preferences want that.
void FitColumnInfo();

// Shows the arrow of that Details column and the direction in force; no column shows none.
void SetSortColumnArrow(std::int32_t column);

} // namespace solvane
