// Going to places of the history: shows what the current entry names, at the row where the user left it.
#pragma once

namespace solvane {

// Shows the current entry. Search results and duplicates are not there any more: the list then stays. False,
// after a requester, when the place cannot be shown; what was on show still is.
bool HandleHistory();

// What keys, buttons and menu items do. An entry that cannot be shown does not become the current one.
void GoBackInHistory();
void GoForwardInHistory();

// Pops the list of all entries up under the History button; the entry on show is marked.
void PopHistoryChooser();
// Serves a choice in it; the current entry is none.
void HandleHistoryChooser();

} // namespace solvane
