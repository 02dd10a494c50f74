// Sorting the Content list and choosing what it is sorted by. The list browser does not sort: the records are
// kept in display order, and the rows are built anew after each sort.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace solvane {

inline constexpr std::int32_t SameColumn = 999; // SortBy: turn the direction round, keep the column

// --- State ---

extern std::int32_t SortDirection; // of the last SortBy; 0 is ascending

// Sorts ContentList in place; direction 0 is ascending, any other descending. In a Details view by the sort
// column, otherwise by name in the order of the prefixes. The rows become stale and the cursor moves;
// pointers to records stay good.
void SortContentList(std::int32_t direction);

// The same for the objects of the Workbench, which are entries too.
void SortWorkbenchList(std::int32_t direction);

// Sorts DOSList by the paths of what was found.
void SortDOSList();

// The user's choice of a column. The one that is the sort column already, and SameColumn, turn the direction
// round; a Details view is sorted by the new one. The rows are rebuilt with selection and place kept, and the
// preferences follow. Nothing where the location has no sorting of its own, and for a column that is not
// there.
void SortBy(std::int32_t column);

// Sorts what is on show as it is sorted already, after what a sort goes by has changed; selection and place
// are kept.
void SortAnew();

// What the location on show is sorted by, and in which direction; nothing where it has no sorting of its own.
struct SortInForce {
    std::int32_t Column = 0;
    std::int32_t Direction = 0;
};
[[nodiscard]] std::optional<SortInForce> SortOnShow();

// The columns on show by which it can be sorted; where the style has none, the name.
struct SortColumn {
    std::int32_t Number = 0;
    std::int32_t Title = 0; // number of the text
};
[[nodiscard]] std::vector<SortColumn> SortColumnsOnShow();

// Saves the preferences and applies Prefs.DrawersOrder to a drawer on show.
void DrawersOrder();

// Writes the order prefixes of all sort names so that drawers stay where Prefs.DrawersOrder wants them when
// SortDirection is descending. A scan writes the prefixes of the ascending form whatever the direction, so in
// a descending drawer they change places at the next scan; intended.
void ReverseContentSortNameType();

} // namespace solvane
