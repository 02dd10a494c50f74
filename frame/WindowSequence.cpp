#include "frame/WindowSequence.h"

#include "automation/TypeAhead.h"
#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "frame/Ports.h"
#include "frame/StartLocation.h"
#include "frame/UpdateSchedule.h"
#include "interface/ContextMenus.h"
#include "interface/Iconify.h"
#include "interface/Images.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Menus.h"
#include "interface/Panes.h"
#include "interface/Screens.h"
#include "interface/Tell.h"
#include "locations/NavigationList.h"
#include "locations/OpenTabs.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "media/Preview.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"

namespace solvane {

namespace {

bool TryOr(bool success, std::string_view message) {
    if (!success) {
        TellTerminate(message);
    }
    return success;
}

// Shows the open (and still empty) window before any drawer is read. A window that was an icon still has its
// layout.
bool OpenWindow() {
    if ((Iconified == 0 || !MainWindow) && !TryOr(CreateMainLayout(), SAK_LocaleString(MSG_NO_GADGETS))) {
        return false;
    }
    SetColumnInfo();
    Objects.ContentList->Activate();
    if (!TryOr(MainWindow->Open(), SAK_LocaleString(MSG_NO_WINDOW))) {
        return false;
    }
    WindowClosed = 0;
    BlockMainWindow(1);
    AttachMenuStrip();
    SetViewStyle(KeepRows::Yes);
    RefreshFilmstrip();
    return true;
}

void ReturnFromIcon() {
    Iconified = 0;
    if (Changes != 0 && LBLocation == LocationKind::Drawer) {
        ScanDrawer();
        DetailsPane2();
    }
    Changes = 0; // the watch that would tell of it has ended
    SetMenuState();
    SetToolbarState();
    SetHistoryGadgetsState();
    if (ClearPreviewWhenUniconfy != 0) {
        ClearPreviewPaneAfterUniconify();
    }
    SAK_StartNotify();
}

void ShowLocations() {
    if (FirstRun != 0 || SecondRun != 0) {
        SetFirstTab();
    }
    UpdateAllLists();
    BuildNavigationList();
    if (FirstRun != 0 || SecondRun != 0) {
        if (PathSpecified == 0 && AtPreferences == 0 && ReopenTabs == 0) {
            GoToStartLocation();
        }
    }
    OpenAppMenuObjects();
    if (PathSpecified != 0 || ReopenTabs != 0) {
        PathSpecified = 0;
        ShowCommandLineTabs();
    }
    if (ReopenTabs != 0) {
        ReopenTabs = 0;
        SwitchToTabNumber(Offset);
    }
    CollectPaneWeights();
}

} // namespace

Station RunEntryA() {
    OpenMainScreen();
    SetActiveScreen();
    if (!TryOr(CreateMainMenuStrip(), SAK_LocaleString(MSG_NO_MENUS)) ||
        !TryOr(CreateContextMenus(), SAK_LocaleString(MSG_NO_CONTEXT_MENUS))) {
        return Station::End;
    }
    UpdateEntireMenuStrip();
    return Station::EntryB;
}

Station RunEntryB() {
    FreeColumnInfoAll();
    if (!TryOr(CreateColumnInfoAll(), SAK_LocaleString(MSG_NO_COLUMN_INFO))) {
        return Station::End;
    }
    EndScreenNotification();
    const bool onDesktop = DefaultPubScreenID.Empty() || Prefs.OpenOnOwnScreen == 0;
    if (onDesktop) {
        StartScreenNotification(*ScrNotPort);
    }
    if (CommodityInForce != 0 && FirstRun != 0 && done2 == 0) {
        FirstRun = 0; // who comes here again was called
        return Station::WaitLoop;
    }
    if (!SetUpTabs()) {
        return Station::End;
    }
    if (LoadImages != 0) {
        if (!TryOr(LoadBitMapImages(), SAK_LocaleString(MSG_NO_IMAGES))) {
            return Station::End;
        }
        LoadImages = 0;
    }
    if (StartIconified != 0 && Iconify()) {
        return Station::WaitLoop;
    }
    StartIconified = 0;
    return Station::EntryC;
}

Station RunEntryC() {
    OpenMainScreen();
    SetActiveScreen();
    if (!OpenWindow()) {
        return Station::End;
    }
    done2 = 0; // the restart marker has done its work: this window is open
    if (Iconified != 0 && ScrNotChange == 0) {
        ReturnFromIcon();
        return Station::WaitLoop;
    }
    if (ScrNotChange != 0 && Iconified == 0) {
        ScrNotChange = 0;
        SetHistoryGadgetsState();
        SecondRun = 1;
    }
    ShowLocations();
    if (Prefs.CheckForUpdates != 0) {
        CheckForUpdates();
    }
    return Station::WaitLoop;
}

Station LeaveIcon() {
    EndTypeAhead();
    Uniconify();
    if (StartIconified != 0) {
        StartIconified = 0;
        Iconified = 0;
    }
    return Station::EntryC;
}

Station ShowProgram() {
    if (Iconified != 0) {
        return LeaveIcon();
    }
    if (!IsWindowOpen()) {
        LoadImages = 1;
        SecondRun = 1;
        StartIconified = 0; // it is a window that is wanted now
        return Station::EntryB;
    }
    BringWindowToFront();
    return Station::WaitLoop;
}

void LeaveWindow() {
    if (CommodityInForce != 0) {
        CloseMainWindow();
    } else {
        done = 1;
    }
}

void CloseMainWindow() {
    if (QuitNoSave == 0) {
        SavePrefs(Prefs.SavePrefsOnExit);
    }
    EndTypeAhead();
    SetPreviewPaneNone();
    SAK_StopNotify();
    FreeNavigationList();
    FreeAllTabs();
    CloseWindowObject();
    WindowClosed = 1;
    if (ScrNotChange != 0) {
        DisposeBitMapImages();
    }
}

void CloseMainWindowUpdate() {
    EndTypeAhead();
    SetPreviewPaneNone();
    SAK_StopNotify();
    FreeNavigationList();
    FreeContentRows(); // their pictures are loaded for the list that goes now
    CloseWindowObject();
    WindowClosed = 1;
}

void CloseForRebuild() {
    ScrNotChange = 1;
    CollectPrefs();
    GetOpenTabs();
    FreeAllTabs();
    CloseMainWindowUpdate();
    ReleaseActiveScreen();
    DisposeBitMapImages();
    LoadImages = 1;
    SecondRun = 1;
}

} // namespace solvane
