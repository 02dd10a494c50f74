// What a click, a double click, a column title and an edited name in the Content pane lead to. The list
// browser owns the selection while the user works; the records get it here.
#pragma once

#include <cstddef>

namespace solvane {

// Serves the next event of the Content list.
void HandleContentListBrowser();

// The row behaves as if the user had clicked it; the list browser has the selection already.
void RowClicked(std::size_t row);

// Lets the user edit the name of the one selected entry in its row. False where that cannot be done: several
// or none are selected, the rows of the view style do not edit names, or the preferences do not want it.
bool StartInlineRename();

} // namespace solvane
