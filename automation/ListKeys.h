// Keys that move the selection of the Content list. A row that is come to behaves as if it were clicked.
#pragma once

#include <cstddef>

namespace solvane {

// Selects that row alone, scrolls to it and runs what a click on it does. Nothing for a row that cannot be
// selected.
void ClickRow(std::size_t row);

// By one row; with Shift by a page, with Control to the first or last one; with Alt the focus mark alone
// moves and the selection stays. Without a selection the first row is taken.
void MoveUp();
void MoveDown();
void MovePageUp();
void MovePageDown();
void MoveToFirst();
void MoveToLast();

// Adds the row with the focus mark to the selection, or takes it out.
void ToggleMarkedRow();

// To the left (below 0) or right.
void ScrollContentSideways(int direction);

} // namespace solvane
