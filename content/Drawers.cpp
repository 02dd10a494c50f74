#include "content/Drawers.h"

#include "content/BuildLists.h"
#include "content/DetailsPane.h"
#include "content/ListContents.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/ViewStyles.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Tell.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/WorkingSet.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "platform/exec/Tasks.h"
#include "sak/FilenameSupport.h"
#include "sak/Messages.h"
#include "sak/Notify.h"
#include "sak/StringFunctions.h"

#include <utility>
#include <vector>

namespace solvane {

namespace {

// True when one of the drawers that CurrentPath stands for is there; otherwise the user has been told.
bool DrawerIsThere() {
    bool found = !CurrentPath.Empty() && SAK_DrawerExists(CurrentPath);
    if (!found && !CurrentPath.Empty()) {
        static_cast<void>(DoAllAssigns(CurrentPath, [&found](const dos::FileLock& lock) {
            const auto object = dos::ExamineObject(lock);
            found = object && object->Type == dos::TypeDrawer;
            return !found;
        }));
    }
    if (!found) {
        Tell(MSG_DRAWER_MISSING);
    }
    return found;
}

void TellCannotRead() {
    TellDosError(MSG_NO_DRAWER_READ);
}

// The names of entries are put behind CurrentPath as it stands. False, after a requester, when there is no
// room for the "/".
bool AppendFinalSlash() {
    if (CurrentPath.View().ends_with(':') || CurrentPath.View().ends_with('/')) {
        return true;
    }
    if (CurrentPath.Size() == CurrentPath.Limit) {
        Tell(MSG_PATH_TOO_LONG);
        return false;
    }
    CurrentPath.Append("/");
    return true;
}

void NoteFtpMount() {
    AtFTPMount = SAK_strcasestr(CurrentPath, "FTPMount:") != NotFound ? 1 : 0;
}

// No games drawer in the preferences means that no place is one.
void NoteGamesDrawer() {
    const std::string_view games = Prefs.WHDLoadGamesRootDrawer;
    const bool inGames = !games.empty() && CurrentPath.View().find(games) != std::string_view::npos;
    AtWHDLoadGamesRootDrawer = inGames ? 1 : 0;
}

// Opens the drawers that CurrentPath stands for and watches it from before that on, so that no change falls
// between. Empty after a requester; the drawer on show is then watched as before.
std::vector<OpenedDrawer> OpenForShow() {
    if (!DrawerIsThere()) {
        return {};
    }
    const bool wasWatching = SAK_NotifyStarted != 0;
    const exec::SignalMask pending = exec::SetSignal(0, 0) & SAK_NotifySignal;
    KeptNotify before = Prefs.MonitorDrawer != 0 ? SAK_ExchangeNotify(CurrentPath) : SAK_KeepNotify();
    std::vector<OpenedDrawer> drawers = OpenDrawers(CurrentPath);
    if (drawers.empty()) {
        const long reason = dos::IoErr();
        if (!wasWatching) {
            SAK_StopNotify();
        }
        SAK_ResumeNotify(std::move(before));
        static_cast<void>(exec::SetSignal(pending, pending));
        dos::SetIoErr(reason);
        TellCannotRead();
    }
    return drawers;
}

void ReadDrawers(std::vector<OpenedDrawer> drawers) {
    FreeContentList(1);
    for (OpenedDrawer& drawer : drawers) {
        ListContents(drawer);
    }
    LBLocation = LocationKind::Drawer;
    CheckLocations();
    SortContentList(Prefs.ContentSortDirection);
    ActiveSet.PathRead = CurrentPath;
}

void ReloadOnShow() {
    if (LBLocation != LocationKind::Drawer) {
        return; // the virtual locations come with their lists; what was fetched or found is not read again
    }
    static_cast<void>(ScanDrawer());
    DetailsPane3();
    SetMenuState();
    SetToolbarState();
}

} // namespace

bool ScanDrawer() {
    NoteGamesDrawer();
    std::vector<OpenedDrawer> drawers;
    if (AppendFinalSlash()) {
        drawers = OpenForShow();
    }
    if (drawers.empty()) {
        DoReload = 0;
        CheckLastCharPath();
        return false;
    }
    NoteFtpMount();
    BlockMainWindow(1);
    SetPreviewPaneNone();
    const bool sameDrawer = ActiveSet.PathRead.SameBytes(CurrentPath);
    if (!sameDrawer || Prefs.MonitorDrawer == 0) {
        Changes = 0; // no notice of the drawer before comes any more
    }
    const KeptSelection selection = DoReload != 0 && sameDrawer ? NoteSelection() : KeptSelection();
    ReadDrawers(std::move(drawers));
    if (DoReload == 0) {
        LBTop = 0;
    }
    DoReload = 0;
    BuildContentList();
    RestoreSelection(selection);
    CheckLastCharPath();
    BlockMainWindow(0);
    return true;
}

bool ReloadDrawer() {
    BlockMainWindow(1);
    SetPreviewPaneNone();
    DoReload = 1;
    NoteTopRow();
    ReloadOnShow();
    DoReload = 0;
    BlockMainWindow(0);
    return true;
}

void FreeContentList(int clearRecords) {
    FreeContentRows();
    if (clearRecords == 0) {
        return;
    }
    if (LinksList) {
        SAK_ClearGenericList(*LinksList);
    }
    if (ContentList) {
        SAK_ClearGenericList(*ContentList);
    }
    ActiveSet.PathRead.Clear();
}

void CheckLastCharPath() {
    CheckLastCharPathOther(CurrentPath);
}

void CheckLastCharPathOther(Text<1024>& path) {
    std::string_view text = path;
    if (text.ends_with('/')) {
        text.remove_suffix(1);
        path = text;
    }
}

} // namespace solvane
