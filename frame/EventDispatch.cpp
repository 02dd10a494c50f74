#include "frame/EventDispatch.h"

#include "automation/ContentEvents.h"
#include "automation/RawKey.h"
#include "automation/SelectCommands.h"
#include "automation/TypeAhead.h"
#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "fileops/Drops.h"
#include "frame/ApplyPreferences.h"
#include "frame/MenuDispatch.h"
#include "frame/MenuRequests.h"
#include "frame/Toolbars.h"
#include "frame/WindowSequence.h"
#include "interface/Choosers.h"
#include "interface/Iconify.h"
#include "interface/MainLayout.h"
#include "interface/MenuIds.h"
#include "interface/SpeedBars.h"
#include "interface/Tell.h"
#include "locations/Devices.h"
#include "locations/EnterDrawer.h"
#include "locations/KeptPlaces.h"
#include "locations/LayoutChange.h"
#include "locations/Navigation.h"
#include "locations/Tabs.h"
#include "locations/ViewChange.h"
#include "locations/VisitHistory.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/intuition/Events.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Messages.h"

namespace solvane {

namespace {

using intuition::EventClass;
using intuition::WindowEvent;

// The last tab takes its window with it.
void CloseWindowWith(Closing closing) {
    if (closing == Closing::WithWindow) {
        LeaveWindow();
    }
}

// The bars, and the buttons at their ends. False: another gadget.
bool ServeBars(const WindowEvent& event) {
    constexpr int step = 3; // buttons
    switch (event.Id) {
    case GadgetBookmarksLeft:
    case GadgetBookmarksRight:
        ScrollSpeedBar_Bookmarks(event.Id == GadgetBookmarksLeft ? -step : step);
        return true;
    case GadgetBookmarks:
        HandleBookmarks(event.Code);
        return true;
    case GadgetToolbarLeft:
    case GadgetToolbarRight:
        ScrollSpeedBar_Toolbar(event.Id == GadgetToolbarLeft ? -step : step);
        return true;
    case GadgetToolbar:
        HandleToolbars(event.Code);
        return true;
    case GadgetUserButtonsLeft:
    case GadgetUserButtonsRight:
        ScrollSpeedBar_UserButtons(event.Id == GadgetUserButtonsLeft ? -step : step);
        return true;
    case GadgetUserButtons:
        HandleMenuPick(MenuFirstUserButton); // all of them are still to come
        return true;
    default:
        return false;
    }
}

// What was picked in one of the lists that pop up. False: another gadget.
bool ServeChooser(const WindowEvent& event) {
    switch (event.Id) {
    case GadgetHistoryChooser:
        HandleHistoryChooser();
        return true;
    case GadgetTypeChooser:
        SelectByType(event.Code);
        return true;
    case GadgetArchiveChooser:
        HandleMenuPick(ArchiveItemAt(event.Code));
        return true;
    case GadgetARexxChooser:
        HandleScriptChooser(event.Code);
        return true;
    case GadgetViewStyleChooser:
        ChangeViewStyleOfTabs(event.Code);
        return true;
    case GadgetLayoutChooser:
        ChangeLayoutOrToolbars(event.Code);
        return true;
    default:
        return false;
    }
}

// Whoever has typed where to go moves on in the list.
void ActivateContentList() {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Activate();
    }
}

void ServeGadget(const WindowEvent& event) {
    if (ServeBars(event) || ServeChooser(event)) {
        return;
    }
    switch (event.Id) {
    case GadgetTabs:
        CloseWindowWith(HandleTabBar());
        break;
    case GadgetBack:
        GoBackInHistory();
        break;
    case GadgetForward:
        GoForwardInHistory();
        break;
    case GadgetHistory:
        PopHistoryChooser();
        break;
    case GadgetParent:
        GoToParent();
        break;
    case GadgetReload:
        ReloadLocation();
        break;
    case GadgetPath:
        HandlePathGadget(Objects.Path->Text());
        ActivateContentList();
        break;
    case GadgetSearch:
    case GadgetAdvancedSearch:
        HandleMenuPick(MenuAdvancedSearch); // both searches are still to come
        break;
    case GadgetViewStyle:
        PopViewStyleChooser();
        break;
    case GadgetLayout:
        PopUpLayout();
        break;
    case GadgetNavigationList:
        HandleNavigationListBrowser("");
        break;
    case GadgetContentList:
        HandleContentListBrowser();
        break;
    default:
        break;
    }
}

void Dispatch(const WindowEvent& event) {
    switch (event.Class) {
    case EventClass::CloseWindow:
        if (!UnlockMainWindow()) { // a script may have died over its lock
            LeaveWindow();
        }
        break;
    case EventClass::GadgetUp:
        ServeGadget(event);
        break;
    case EventClass::NewSize:
    case EventClass::ChangeWindow:
        SavePrefs(0);
        break;
    case EventClass::AppMessage:
        AppMsgFunc(event.Objects);
        break;
    case EventClass::RawKey:
        CloseWindowWith(HandleRawKeys());
        break;
    case EventClass::IntuiTicks:
        TickTypeAhead();
        break;
    case EventClass::MouseButtons:
        HandleMouseButton();
        break;
    case EventClass::MenuPick:
        HandleMenuPick(event.Code);
        break;
    case EventClass::MenuVerify:
        ServeMenuVerify(event);
        break;
    case EventClass::ScreenJump:
        break; // desktops move windows between screens by themselves
    }
}

// Another process has written the preferences: the window is built anew after them.
Station ReloadPreferences() {
    ReloadPrefs = 1;
    LoadAndApplyPreferences();
    CloseForRebuild();
    UpdateDevicesList(); // what it holds and how it is called is theirs to say
    ReloadPrefs = 0;
    return Station::EntryA;
}

void NoteEvent(const WindowEvent& event) {
    Code = event.Code;
    Qualifier = event.Qualifier;
    KeyText = event.Text;
}

} // namespace

Station ServeWindowEvents() {
    while (MainWindow) {
        const auto event = MainWindow->NextEvent();
        if (!event) {
            break;
        }
        NoteEvent(*event);
        Dispatch(*event);
        if (JumpToARexxCmd != NoJump) {
            return ActOnARexxJump();
        }
    }
    return Station::WaitLoop;
}

Station ActOnARexxJump() {
    const std::int32_t command = JumpToARexxCmd;
    JumpToARexxCmd = NoJump;
    switch (command) {
    case JumpActivate:
        return ShowProgram();
    case JumpIconify:
        static_cast<void>(Iconify());
        return Station::WaitLoop;
    case JumpUniconify:
        return LeaveIcon();
    case JumpParent:
        GoToParent();
        return Station::WaitLoop;
    case JumpCloseTab:
        LeaveWindow();
        return Station::WaitLoop;
    case JumpChangePath:
        HandlePathGadget(JumpPath.View());
        return Station::WaitLoop;
    case JumpLoadPrefs:
        return ReloadPreferences();
    case JumpToNewScreen:
        CloseForRebuild();
        return Station::EntryA;
    default:
        return Station::WaitLoop;
    }
}

} // namespace solvane
