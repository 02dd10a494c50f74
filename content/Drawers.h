// The drawer on show as a whole: scanning it into rows, reloading it, dropping it. Shows the requesters of
// its own failures; history, and the frame around a newly entered drawer, are the business of locations/.
#pragma once

#include "sak/Text.h"

#include <cstdint>

namespace solvane {

// Scans CurrentPath into ContentList, sorts it, builds the rows and watches the drawer from then on. False,
// after a requester and with nothing changed on show, when there is no such drawer or it cannot be read.
// CurrentPath gets a final "/" where it has neither that nor ":".
//
// With DoReload set the list keeps its scroll position (LBTop), and the selection too when it shows the same
// drawer as before; DoReload is cleared.
bool ScanDrawer();

// Refreshes what LBLocation shows. Always true.
bool ReloadDrawer();

// Drops the rows of the Content list; with clearRecords not 0 the records in ContentList and LinksList too.
void FreeContentList(int clearRecords);

// Take one final "/" off.
void CheckLastCharPath();
void CheckLastCharPathOther(Text<1024>& path);

} // namespace solvane
