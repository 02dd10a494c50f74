#include "frame/MainLoop.h"

#include "automation/ARexx.h"
#include "automation/Commodity.h"
#include "content/DrawerMonitor.h"
#include "fileops/Drops.h"
#include "frame/EventDispatch.h"
#include "frame/LanguageCheck.h"
#include "frame/Ports.h"
#include "frame/Snapshot.h"
#include "frame/WindowSequence.h"
#include "interface/Iconify.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Processes.h"
#include "interface/Screens.h"
#include "locations/DeviceUsage.h"
#include "locations/DiskEvents.h"
#include "locations/PlaceLists.h"
#include "locations/PlaceRouter.h"
#include "locations/Tabs.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"
#include "sak/Requesters.h"

#include <array>

namespace solvane {

namespace {

constexpr int CommandRefused = 20; // return code

// One source of work: the signal that tells of it and what serves it. Serving results in WaitLoop to go on
// with the round, or in the station that abandons it.
struct SignalSource {
    exec::SignalMask (*Mask)();
    Station (*Serve)();
};

template <std::unique_ptr<exec::MsgPort>& Port>
exec::SignalMask PortMask() {
    return Port ? Port->Mask() : 0;
}

Station ServeAppIcon() {
    return AppIconMsg(*AppIconPort, IconDrop::IntoDrawer) ? ShowProgram() : Station::WaitLoop;
}

Station ServeAppMenu() {
    if (!AppIconMsg(*AppMenuPort, IconDrop::Opens)) {
        return Station::WaitLoop;
    }
    if (IsWindowOpen()) {
        OpenNewTab(0);
    }
    return ShowProgram();
}

// The public port only names the instance; commands have a port of their own.
Station RefuseCommands() {
    while (auto command = port->Get()) {
        command->Reply(CommandRefused, "");
    }
    return Station::WaitLoop;
}

// What a message about the screens leads to.
Station ActOnScreenMessage(const ScreenMessage& message) {
    if (WindowClosed != 0 && message.What == ScreenEvent::WorkbenchOpened && ScrNotChange != 0) {
        return Station::EntryB;
    }
    if (WindowClosed != 0 || Iconified != 0) {
        return Station::WaitLoop;
    }
    switch (message.What) {
    case ScreenEvent::WorkbenchOpened:
        CloseForRebuild();
        return Station::EntryB;
    case ScreenEvent::WorkbenchCloses:
        CloseForRebuild();
        return Station::WaitLoop; // and waits for the Workbench to open again
    case ScreenEvent::ScreenCloses:
        if (!message.Screen.SameBytes(ActiveScreen)) {
            return Station::WaitLoop;
        }
        CloseForRebuild();
        DefaultPubScreenID.Clear(); // back to the default screen
        return Station::EntryB;
    }
    return Station::WaitLoop;
}

Station ServeScreenNotification() {
    Station next = Station::WaitLoop;
    while (auto message = exec::GetMsg(*ScrNotPort)) {
        if (const auto* screen = dynamic_cast<const ScreenMessage*>(message.get())) {
            const Station wish = ActOnScreenMessage(*screen);
            next = wish == Station::WaitLoop ? next : wish;
        }
        exec::ReplyMsg(std::move(message));
    }
    return next;
}

Station ServeNothing() {
    return Station::WaitLoop;
}

Station ServeDrawerNotification() {
    if (SAK_NotifyHasChanged()) {
        const bool isDesktop = LBLocation == LocationKind::Workbench && Changes == 0;
        isDesktop ? ReloadLocation() : DrawerChanged();
    } // else a tab that is not on show has noted it
    return Station::WaitLoop;
}

Station ServeTimer() {
    if (AnimPlaying != 0) {
        PreviewAnimRender();
    }
    if (SoundPlaying != 0) {
        PreviewSoundTime();
    }
    return Station::WaitLoop;
}

// The user has picked one of the program's notices or its entry in the dock.
Station ServeDesktop() {
    const bool isPicked = (Signals & AppLibSignal & ~AppLibPort->Mask()) != 0;
    return AppIconMsg(*AppLibPort, IconDrop::IntoDrawer) || isPicked ? ShowProgram() : Station::WaitLoop;
}

Station ServeDisks() {
    DisksChanged();
    return Station::WaitLoop;
}

Station ServeDeviceUsage() {
    DeviceUsageCame();
    return Station::WaitLoop;
}

// The hot key brings the window up, or opens a tab in the one that there is.
Station ServeCommodity() {
    if (Iconified == 0 && IsWindowOpen()) {
        OpenNewTab(0);
    }
    return ShowProgram();
}

// What the helpers have found out about menus and bars.
Station ServeHelpers() {
    ShowHelperResults();
    return Station::WaitLoop;
}

exec::SignalMask WindowMask() {
    return SignalsMask;
}

// An ARexx command runs in its handler; what it left for the loop is done here.
Station ServeARexx() {
    HandleARexx();
    return ActOnARexxJump();
}

// The order in which the sources of one round are served.
constexpr std::array Sources = {
    SignalSource{PortMask<UserPort>, ServeNothing}, // its events are fetched with the window's
    SignalSource{PortMask<ScrNotPort>, ServeScreenNotification},
    SignalSource{NotifyVarSignal, ServeNothing},
    SignalSource{[] { return SAK_NotifySignal; }, ServeDrawerNotification},
    SignalSource{[] { return ARexxSignal; }, ServeARexx},
    SignalSource{[] { return CxSignal; }, ServeCommodity},
    SignalSource{PortMask<AppIconPort>, ServeAppIcon},
    SignalSource{[] { return AppMenuSignal; }, ServeAppMenu},
    SignalSource{[] { return AppLibSignal; }, ServeDesktop},
    SignalSource{[] { return SAK_TimerMP ? SAK_TimerMP->Mask() : exec::SignalMask{0}; }, ServeTimer},
    SignalSource{[] { return PreviewSoundSignal; }, ServeNothing},
    SignalSource{[] { return DiskEventSignal; }, ServeDisks},
    SignalSource{[] { return DeviceUsageSignal; }, ServeDeviceUsage},
    SignalSource{WindowMask, ServeWindowEvents},
    SignalSource{PortMask<ResultPort>, ServeHelpers},
    SignalSource{[] { return port ? port->Mask() : exec::SignalMask{0}; }, RefuseCommands},
};

exec::SignalMask MaskOfAllSources() {
    exec::SignalMask mask = 0;
    for (const SignalSource& source : Sources) {
        mask |= source.Mask();
    }
    return mask;
}

Station ServeSources() {
    for (const SignalSource& source : Sources) {
        if ((Signals & source.Mask()) == 0) {
            continue;
        }
        const Station next = source.Serve();
        if (next != Station::WaitLoop) {
            return next;
        }
    }
    return done != 0 ? Station::Quit : Station::WaitLoop;
}

Station RunRound() {
    if (StartIconified == 0) {
        FirstRun = 0;
    }
    if (AtPreferences != 0) {
        SavePrefs(1);
        AtPreferences = 0;
    }
    BlockMainWindow(-1);
    ServeDelayedChange();
    SignalsMask = MainWindow ? MainWindow->Mask() : 0;
    if (exec::CheckSignal(exec::BreakControlC) != 0) {
        return Station::End; // nobody is there to be asked
    }
    if (done != 0) {
        return Station::Quit;
    }
    Signals = exec::Wait(MaskOfAllSources() | exec::BreakControlC);
    return (Signals & exec::BreakControlC) != 0 ? Station::End : ServeSources();
}

Station RunWaitLoop() {
    Station next = Station::WaitLoop;
    while (next == Station::WaitLoop) {
        next = TakeSnapshot() ? Station::End : RunRound();
    }
    return next;
}

// The user stays, whatever a command wished for.
void Stay() {
    done = 0;
    TakeBackQuitNoSave();
}

// Asks whether the user really wants to go, where the preferences want that asked.
Station ConfirmQuit() {
    if (!IsWindowOpen() || Prefs.VerifyQuit == 0) {
        return Station::End;
    }
    switch (SAK_EasyRequest(MainWindow.get(), RequesterTitle.View(), RequesterImage::Question,
                            SAK_LocaleString(MSG_QUIT_SURE), SAK_LocaleString(MSG_QUIT_GAD))) {
    case 1:
        return Station::End;
    case 2:
        Stay();
        TabClosed = 0;
        static_cast<void>(Iconify());
        return Station::WaitLoop;
    default:
        Stay();
        return Station::WaitLoop;
    }
}

} // namespace

void RunMainLoop() {
    Station station = Station::EntryA;
    while (station != Station::End) {
        switch (station) {
        case Station::EntryA:
            station = RunEntryA();
            break;
        case Station::EntryB:
            station = RunEntryB();
            break;
        case Station::EntryC:
            station = RunEntryC();
            break;
        case Station::WaitLoop:
            station = RunWaitLoop();
            break;
        case Station::Quit:
            station = ConfirmQuit();
            break;
        case Station::End:
            break;
        }
    }
}

} // namespace solvane
