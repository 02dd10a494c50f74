// The rows of the Navigation pane: favorites, devices, assigns, sites. They carry the texts by which
// HandleNavigationListBrowser routes.
#pragma once

namespace solvane {

// Frees the rows, before the records change that they stand for: at each opening of a window.
void UpdateAllLists();

// Fills the pane with a row for everything there is now, and selects the one of the place on show. Nothing
// without a pane.
void BuildNavigationList();
void FreeNavigationList();

void OpenAppMenuObjects(); // shows what an entry of a desktop menu was picked for while the window was closed

} // namespace solvane
