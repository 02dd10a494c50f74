#include "content/Drawers.h"

#include "content/BuildLists.h"
#include "content/DetailsPane.h"
#include "content/ListContents.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Examine.h"
#include "sak/FilenameSupport.h"
#include "sak/Notify.h"
#include "sak/Requesters.h"
#include "sak/StringFunctions.h"

namespace solvane {

namespace {

Text<1024> PathOnShow; // the drawer that ContentList was read from

// True when the drawer is there and can be read; otherwise the user has been told.
bool CanShowDrawer() {
    if (CurrentPath.Empty() || !SAK_DrawerExists(CurrentPath)) {
        SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Information,
                        "Drawer does not exist.", "_Continue");
        return false;
    }
    if (!dos::ObtainDirContext(CurrentPath)) {
        SAK_IOErr = dos::IoErr();
        SAK_IOError(MainWindow.get(), RequesterTitle, "Could not read drawer.",
                    "DOS error message:", "_Continue");
        return false;
    }
    return true;
}

// False when there is no room for the "/".
bool AppendFinalSlash() {
    if (CurrentPath.View().ends_with(':') || CurrentPath.View().ends_with('/')) {
        return true;
    }
    if (CurrentPath.Size() == CurrentPath.Limit) {
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

// Watched from before the listing on, so that no change falls between the two.
void WatchDrawer() {
    if (Prefs.MonitorDrawer != 0) {
        SAK_ChangeNotify(CurrentPath);
    } else {
        SAK_StopNotify();
    }
}

void ReadDrawer() {
    FreeContentList(1);
    WatchDrawer();
    static_cast<void>(DoAllAssigns(CurrentPath, ListContents));
    SortContentList(Prefs.ContentSortDirection);
    PathOnShow = CurrentPath;
}

void ReloadOnShow() {
    if (LBLocation >= LocationKind::OS4Depot && LBLocation <= LocationKind::Archive) {
        return; // made from what was fetched or found, not from a drawer
    }
    if (LBLocation != LocationKind::Drawer) {
        return; // the virtual locations come with their lists
    }
    static_cast<void>(ScanDrawer());
    DetailsPane2();
    SetMenuState();
    SetToolbarState();
}

} // namespace

bool ScanDrawer() {
    NoteGamesDrawer();
    if (!AppendFinalSlash() || !CanShowDrawer()) {
        DoReload = 0;
        return false;
    }
    NoteFtpMount();
    BlockMainWindow(1);
    SetPreviewPaneNone();
    const bool sameDrawer = DoReload != 0 && PathOnShow.SameBytes(CurrentPath);
    const KeptSelection selection = sameDrawer ? NoteSelection() : KeptSelection();
    ReadDrawer();
    if (DoReload == 0) {
        LBTop = 0;
    }
    DoReload = 0;
    LBLocation = LocationKind::Drawer;
    BuildContentList();
    RestoreSelection(selection);
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
    PathOnShow.Clear();
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
