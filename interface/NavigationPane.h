// The selected row of the Navigation pane. What the rows are, and where they lead, is known in locations/.
#pragma once

#include "model/Content.h"

#include <cstdint>

namespace solvane {

// --- State ---

inline constexpr std::int32_t NothingSelected = -2;
extern std::int32_t OldSelected; // the selected row; written here alone

// --- Functions ---

// Selects the row that fits a location: that of the place, or of a drawer its favorite or its device,
// whichever stands first. Without such a row the selection stays; Bookmarks have none and take the selection
// away. Nothing without a pane.
void SetNavigationSelected(LocationKind location);

// Selects the row of the text that was selected before, after all rows were made anew; none when it has gone.
void FindOldRow();

// What was selected before is not found again, as the pane has gone.
void ForgetOldRow();

// Selects the row that was selected before, after a click on one that cannot be.
void SelectOldRow();

} // namespace solvane
