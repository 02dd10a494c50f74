#include "frame/EventDispatch.h"

#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "frame/WindowSequence.h"
#include "interface/Iconify.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "locations/Navigation.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/intuition/Events.h"
#include "prefs/LoadSavePrefs.h"

namespace solvane {

namespace {

using intuition::EventClass;
using intuition::WindowEvent;

constexpr std::uint16_t KeyH = 37;
constexpr std::uint32_t TypeAheadTicks = 9; // ticks after which the next key begins a new word

void ServeGadget(const WindowEvent& event) {
    switch (event.Id) {
    case GadgetParent:
        GoToParent();
        break;
    case GadgetReload:
        ReloadDrawer();
        break;
    case GadgetPath:
        CurrentPath = Objects.Path->Text();
        HandlePathGadget();
        break;
    case GadgetViewStyle:
        ChooserSelected = event.Code;
        ChangeViewStyle();
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
    ReloadDrawer();
}

void ServeRawKey(const WindowEvent& event) {
    if ((event.Qualifier & intuition::qualifier::Control) != 0) {
        if (event.Code == KeyH) {
            ToggleHiddenEntries();
        }
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

void ServeCloseGadget() {
    if (Prefs.UseCommodity != 0) {
        CloseMainWindow();
    } else {
        done = 1;
    }
}

void KeepGeometry() {
    UpdateAllSpeedBars();
    SavePrefs(0);
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
        KeepGeometry();
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
    case EventClass::MenuPick:
    case EventClass::MouseButtons:
    case EventClass::ScreenJump:
        break; // no menu, button action or second screen to lead to yet
    }
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
        Uniconify();
        return Station::EntryC;
    case 9:
        GoToParent();
        return Station::WaitLoop;
    case 84:
        HandlePathGadget();
        return Station::WaitLoop;
    default:
        return Station::WaitLoop;
    }
}

} // namespace solvane
