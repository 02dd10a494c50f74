#include "content/DrawerMonitor.h"

#include "content/BuildLists.h"
#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "sak/Requesters.h"
#include "sak/Ringhio.h"

namespace solvane {

void DrawerChanged() {
    if (Changes != 0) {
        Changes = 0;
        return;
    }
    if (LBLocation != LocationKind::Drawer) {
        return;
    }
    DoReload = 1;
    NoteTopRow();
    if (!ScanDrawer()) {
        return;
    }
    DetailsPane2();
    if (Prefs.EnableRinghio != 0) {
        RinghioMessage(RequesterTitle, "Drawer contents were changed.  Drawer was reloaded.", "FRONT",
                       RinghioImageBuffer, {});
    }
}

} // namespace solvane
