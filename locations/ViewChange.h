// Changing how lists are shown: what the View menu switches, and the view style. Which bars and panes there
// are is LayoutChange's concern.
#pragma once

#include <cstdint>

namespace solvane {

// Each switches its setting, which is kept and marked in the menu, and shows the change: on show at once, in
// other tabs when they are shown next.

// Whether ".info" files belong to their files and have no rows.
void ProcessInfoFiles();
// Whether entries are shown by their own icons.
void ShowActualIcons();
// Whether the Details pane shows what is in a picture.
void ShowThumbnail();
// Whether entries have rows whose names begin with ".".
void ToggleHiddenEntries();

// Changes the view style; with ChangeAllTabs that of this kind of place in all tabs.
void ChangeViewStyleOfTabs(std::int32_t style);

} // namespace solvane
