// The list of places in the Navigation pane; it comes with the pane.
#pragma once

namespace solvane {

void UpdateAllLists(); // reads the places anew: at each opening of a window
void BuildNavigationList();
void FreeNavigationList();
void OpenAppMenuObjects(); // shows what an entry of a desktop menu was picked for while the window was closed

} // namespace solvane
