#include "content/DrawerMonitor.h"

#include "content/BuildLists.h"
#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Ringhio.h"
#include "model/Content.h"
#include "model/Devices.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Locks.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

#include <optional>
#include <utility>

namespace solvane {

namespace {

std::optional<Text<1024>> ChangedPath; // of the drawer whose rows wait for a name to be edited

bool IsNameEdited() {
    return Objects.ContentList != nullptr && Objects.ContentList->IsEditing();
}

// Where the disk has left, its tabs are about to close, and nobody is asked to bring it back for that. What
// lies behind an assign stays on show, so that is asked for.
bool HasDiskLeft() {
    const WithoutRequesters quiet;
    Text<1024> root;
    return SAK_GetDeviceRoot(CurrentPath, root) && FindMasterAssignsNode(root) == nullptr &&
           !dos::Lock(root) && dos::IoErr() == dos::ErrorDeviceNotMounted;
}

void ReloadChanged() {
    if (HasDiskLeft()) {
        return;
    }
    DoReload = 1;
    NoteTopRow();
    if (!ScanDrawer()) {
        return;
    }
    DetailsPane3();
    SetMenuState();
    SetToolbarState();
    RinghioMessage(RequesterTitle, SAK_LocaleString(MSG_DRAWER_CHANGED), "FRONT", RinghioImageBuffer, {});
}

} // namespace

void DrawerChanged() {
    if (Changes != 0) {
        Changes = 0;
        return;
    }
    if (LBLocation != LocationKind::Drawer) {
        return;
    }
    if (IsNameEdited()) {
        ChangedPath = CurrentPath;
    } else {
        ReloadChanged();
    }
}

void ServeDelayedChange() {
    if (!ChangedPath || IsNameEdited()) {
        return;
    }
    const Text<1024> path = *std::exchange(ChangedPath, std::nullopt);
    if (LBLocation == LocationKind::Drawer && path.SameBytes(CurrentPath)) {
        ReloadChanged();
    }
}

} // namespace solvane
