// Turns ContentList into the rows of the Content list: which entries have a row, in which view style. Rows
// name their records and are cheap; what a row shows is read from the record when it is drawn.
#pragma once

#include "model/ContentNode.h"

#include <string_view>

namespace solvane {

// True when the entry has a row: no ".info" file that belongs to its file (Prefs.ProcessInfoFiles, never on
// an FTP mount), and no name that begins with "." unless Prefs.ShowHiddenEntries is set.
[[nodiscard]] bool HasRow(const ContentNode& node);

// Path of what the filmstrip shows for the entry: a picture itself, else the picture of its kind.
[[nodiscard]] std::string_view FilmstripImageOf(const ContentNode& node);

// Rebuilds the rows from the records, in the order of ContentList, and shows them from LBTop on with nothing
// selected. With no entry to show there is one empty row (ActuallyZero) and TotalNodes is 0. An entry without
// a row loses its selected flag, so that no command on the selection touches what cannot be seen. The
// filmstrip has no empty row and fills FilmstripList, style 7 has no rows at all.
void BuildContentList();

// Shows the rows that the tab has kept, of whatever location: nothing is read or looked up again. Nothing is
// selected then.
void BuildContentList_Tabs();

// Brings choosers in line with the view style in force, and builds the rows anew unless they are kept.
enum class KeepRows { No, Yes };
void SetViewStyle(KeepRows keep);

// Pops the view styles up that the location on show can have.
void PopViewStyleChooser();

// Takes a new style for the location on show, into its preference, and builds the rows anew in the order that
// they have, place and selection kept. A path with a style of its own keeps that.
void ChangeViewStyle(std::int32_t style);

// Drops the rows and whatever the list browser draws from.
void FreeContentRows();

// Takes the rows off the window, and keeps them for the tab's return.
void TakeRowsOffWindow();

// Reads the list browser's first visible row into LBTop.
void NoteTopRow();

} // namespace solvane
