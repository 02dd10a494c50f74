#include "content/DrawerMonitor.h"

#include "content/BuildLists.h"
#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "interface/Ringhio.h"
#include "model/Content.h"
#include "model/Program.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

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
    RinghioMessage(RequesterTitle, SAK_LocaleString(MSG_DRAWER_CHANGED), "FRONT", RinghioImageBuffer, {});
}

} // namespace solvane
