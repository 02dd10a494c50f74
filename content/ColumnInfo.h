// The columns of the Content list: which ones a Details view shows, how wide, and the arrow of the sort
// column. The user's choices live in ShowDetailsColumnsList; the list browser's columns are made from it.
#pragma once

#include "content/SortKeys.h"

#include <cstdint>
#include <vector>

namespace solvane {

inline constexpr int IconColumnWidth = 26; // pixels, where the picture is a small one

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

// What each column of the list browser shows in that view style, from the first on. In the Content style the
// third one is its second label.
[[nodiscard]] std::vector<DetailsColumn> ShownColumns(std::int32_t style);

// Gives the open window's list browser the columns of the style in force; a new window has none.
void SetColumnInfo();

// True when the columns that SetColumnInfo has set last are those of the style in force.
[[nodiscard]] bool ColumnsAreInForce();

// What the columns show that SetColumnInfo has set last, by the list browser's index.
[[nodiscard]] const std::vector<DetailsColumn>& ColumnsInForce();

// Takes the list browser's present order over into ShowDetailsColumnsList, and the widths of those columns
// that are not as wide as SetColumnInfo or the last call found them; of the Content style the widths, into
// its preferences. Nothing while columns fit themselves (Prefs.AutoFitColumns), and in styles of one column.
void GetColumnInfoWidths();

// Shows the arrow of that Details column and the direction in force; no column shows none.
void SetSortColumnArrow(std::int32_t column);

} // namespace solvane
