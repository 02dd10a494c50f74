// Sorting the Content list and choosing what it is sorted by. The list browser does not sort: the records are
// kept in display order, and the rows are built anew after each sort.
#pragma once

#include <cstdint>

namespace solvane {

inline constexpr std::int32_t SameColumn = 999; // SortBy: turn the direction round, keep the column

// --- State ---

extern std::int32_t SortDirection; // of the last SortBy; 0 is ascending

// Sorts ContentList in place; direction 0 is ascending, any other descending. In a Details view by the sort
// column, otherwise by name in the order of the prefixes. The rows become stale and the cursor moves;
// pointers to records stay good.
void SortContentList(std::int32_t direction);

// The user's choice of a Details column. The column that is the sort column already, and SameColumn, turn the
// direction round. The rows are rebuilt with the selection kept, and the preferences are saved.
void SortBy(std::int32_t column);

// Applies Prefs.DrawersOrder to the drawer on show and saves the preferences.
void DrawersOrder();

// Writes the order prefixes of all sort names so that drawers stay where Prefs.DrawersOrder wants them when
// SortDirection is descending. A scan writes the prefixes of the ascending form whatever the direction, so in
// a descending drawer they change places at the next scan; intended.
void ReverseContentSortNameType();

} // namespace solvane
