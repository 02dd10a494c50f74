#include "frame/EventDispatch.h"

#include "automation/ARexxScripts.h"
#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "fileops/Drops.h"
#include "frame/Terminate.h"
#include "frame/Toolbars.h"
#include "frame/WindowSequence.h"
#include "interface/Choosers.h"
#include "interface/Iconify.h"
#include "interface/Locale.h"
#include "interface/MainLayout.h"
#include "interface/SpeedBars.h"
#include "locations/EnterDrawer.h"
#include "locations/KeptPlaces.h"
#include "locations/LayoutChange.h"
#include "locations/Navigation.h"
#include "locations/OpenTabs.h"
#include "locations/RescanTabs.h"
#include "locations/Tabs.h"
#include "locations/VisitHistory.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "model/Tabs.h"
#include "platform/intuition/Events.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>
#include <optional>

namespace solvane {

namespace {

using intuition::EventClass;
using intuition::WindowEvent;

constexpr std::uint16_t KeyW = 17, KeyT = 20, KeyH = 37;
constexpr std::uint32_t TypeAheadTicks = 9; // ticks after which the next key begins a new word

void ServeCloseGadget() {
    if (Prefs.UseCommodity != 0) {
        CloseMainWindow();
    } else {
        done = 1;
    }
}

// The last tab takes its window with it.
void CloseWindowWith(Closing closing) {
    if (closing == Closing::WithWindow) {
        ServeCloseGadget();
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
    case GadgetARexxChooser:
        HandleScriptChooser(event.Code);
        return true;
    case GadgetViewStyleChooser:
        ChooserSelected = event.Code;
        ChangeViewStyleOfTabs();
        return true;
    case GadgetLayoutChooser:
        ChooserSelected = event.Code;
        ChangeLayoutOrToolbars();
        return true;
    default:
        return false;
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
        CurrentPath = TypedPath(Objects.Path->Text()).value_or(PathTooLong);
        HandlePathGadget();
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
        HandleContentListBrowser("");
        break;
    default:
        break;
    }
}

void ToggleHiddenEntries() {
    Prefs.ShowHiddenEntries = Prefs.ShowHiddenEntries == 0 ? 1 : 0;
    SetRescanAllTabsByLocation(LocationKind::Drawer);
    SetRescanAllTabsByLocation(LocationKind::Workbench);
    if (ActiveTab != nullptr) {
        ActiveTab->RescanTab = 0;
    }
    ReloadLocation();
}

// The number that a digit key stands for, 10 for the 0; none for other keys.
std::optional<std::uint32_t> DigitOf(std::uint16_t key) {
    constexpr std::array<std::uint16_t, 10> Numeric = {29, 30, 31, 45, 46, 47, 61, 62, 63, 15};
    if (key >= 1 && key <= 10) {
        return key;
    }
    const auto found = std::find(Numeric.begin(), Numeric.end(), key);
    return found != Numeric.end() ? std::optional(static_cast<std::uint32_t>(found - Numeric.begin()) + 1)
                                  : std::nullopt;
}

void ServeControlKey(const WindowEvent& event) {
    constexpr std::uint16_t Shift = intuition::qualifier::LeftShift | intuition::qualifier::RightShift;
    switch (event.Code) {
    case KeyH:
        ToggleHiddenEntries();
        break;
    case KeyT:
        OpenNewTab(0);
        break;
    case KeyW:
        CloseWindowWith(CloseTab());
        break;
    case intuition::rawkey::Tab:
        if ((event.Qualifier & Shift) != 0) {
            PreviousTab();
        } else {
            NextTab();
        }
        break;
    case intuition::rawkey::Return:
    case intuition::rawkey::Enter:
        OpenMultipleNewTabs();
        break;
    default:
        if (const auto digit = DigitOf(event.Code)) {
            SwitchToTabNumber(*digit);
        }
        break;
    }
}

void ServeRawKey(const WindowEvent& event) {
    if ((event.Qualifier & intuition::qualifier::Control) != 0) {
        ServeControlKey(event);
        return;
    }
    switch (event.Code) {
    case intuition::rawkey::Backspace:
        GoToParent();
        break;
    case intuition::rawkey::Return:
    case intuition::rawkey::Enter:
        OpenSelectedEntry();
        break;
    case intuition::rawkey::Left:
        GoBackInHistory();
        break;
    case intuition::rawkey::Right:
        GoForwardInHistory();
        break;
    default:
        break;
    }
}

// What the preferences give the further buttons of a mouse to do, and the wheel with Control held.
void ServeMouseButton(const WindowEvent& event) {
    enum Action : std::int32_t { Open = 1, Parent = 2, Back = 3, Forward = 4, OpenInTab = 5 };
    std::int32_t action = 0;
    switch (event.Code) {
    case intuition::mousebutton::FifthUp:
        action = Prefs.FifthButtonAction;
        break;
    case intuition::mousebutton::FourthUp:
        action = Prefs.FourthButtonAction;
        break;
    case intuition::mousebutton::MiddleUp:
        action = Prefs.MiddleButtonAction;
        break;
    case intuition::mousebutton::WheelUp:
        PreviousTab();
        return;
    case intuition::mousebutton::WheelDown:
        NextTab();
        return;
    default:
        return;
    }
    switch (action) {
    case Open:
        OpenSelectedEntry();
        break;
    case Parent:
        GoToParent();
        break;
    case Back:
        GoBackInHistory();
        break;
    case Forward:
        GoForwardInHistory();
        break;
    case OpenInTab:
        OpenMultipleNewTabs();
        break;
    default:
        break;
    }
}

void ServeTick() {
    if (++JumpToCount > TypeAheadTicks) {
        JumpToCount = 0;
        SameJumpTo = 0;
    }
}

void Dispatch(const WindowEvent& event) {
    switch (event.Class) {
    case EventClass::CloseWindow:
        ServeCloseGadget();
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
    case EventClass::Iconify:
        static_cast<void>(Iconify());
        break;
    case EventClass::RawKey:
        ServeRawKey(event);
        break;
    case EventClass::IntuiTicks:
        ServeTick();
        break;
    case EventClass::MouseButtons:
        ServeMouseButton(event);
        break;
    case EventClass::MenuPick:
    case EventClass::ScreenJump:
        break; // no menu or second screen to lead to yet
    }
}

// Another process has written the preferences: the window is built anew after them.
Station ReloadPreferences() {
    ReloadPrefs = 1;
    LoadPrefs();
    SetupLocale();
    SetDateFormatInForce();
    if (!DiscoverARexxScripts()) {
        TellAndContinue(SAK_LocaleString(MSG_AREXX_SCAN_ERROR));
    }
    CloseForRebuild();
    ReloadPrefs = 0;
    return Station::EntryA;
}

void NoteEvent(const WindowEvent& event) {
    Result = (static_cast<std::uint32_t>(event.Class) << 16U) | event.Id;
    Code = event.Code;
    Qualifier = event.Qualifier;
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
    }
    return Station::WaitLoop;
}

Station ActOnARexxJump() {
    const std::int32_t command = JumpToARexxCmd;
    JumpToARexxCmd = NoJump;
    switch (command) {
    case 1:
        LoadImages = 1;
        SecondRun = 1;
        return Station::EntryA;
    case 5:
        static_cast<void>(Iconify());
        return Station::WaitLoop;
    case 6:
        return LeaveIcon();
    case 9:
        GoToParent();
        return Station::WaitLoop;
    case 68:
        CloseWindowWith(Closing::WithWindow);
        return Station::WaitLoop;
    case 84:
        HandlePathGadget();
        return Station::WaitLoop;
    case 97:
        return ReloadPreferences();
    case 107:
        CloseForRebuild();
        return Station::EntryA;
    default:
        return Station::WaitLoop;
    }
}

} // namespace solvane
