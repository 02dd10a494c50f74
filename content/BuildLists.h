// Turns ContentList into the rows of the Content list: which entries have a row, in which view style. Rows
// name their records and are cheap; what a row shows is read from the record when it is drawn.
#pragma once

#include "model/ContentNode.h"

namespace solvane {

// True when the entry has a row: no ".info" file that belongs to its file (Prefs.ProcessInfoFiles, never on
// an FTP mount), and no name that begins with "." unless Prefs.ShowHiddenEntries is set.
[[nodiscard]] bool HasRow(const ContentNode& node);

// Rebuilds the rows from the records, in the order of ContentList, and shows them from LBTop on with nothing
// selected. With no entry to show there is one empty row (ActuallyZero) and TotalNodes is 0. An entry without
// a row loses its selected flag, so that no command on the selection touches what cannot be seen. Styles
// other than List and Details are shown as Details; style 7 has no rows.
void BuildContentList();

// Brings menus and choosers in line with the view style; there are none yet.
void SetViewStyle();

// Drops the rows and whatever the list browser draws from.
void FreeContentRows();

// Reads the list browser's first visible row into LBTop.
void NoteTopRow();

} // namespace solvane
