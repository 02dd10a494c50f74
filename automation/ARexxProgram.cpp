// Commands about the program itself and its window.
#include "automation/ARexxHandlers.h"
#include "automation/Instances.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Windows.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "prefs/LoadSavePrefs.h"

#include <initializer_list>
#include <limits>

namespace solvane {

namespace {

constexpr std::uint32_t LargestMeasure = 32767; // pixels

// Sets those of the four measures that have a value; nothing happens where one of the names was not given.
void SetBox(const rexx::CommandCall& call, std::initializer_list<std::string_view> names) {
    if (!IsWindowOpen()) {
        return;
    }
    intuition::Box box = MainWindow->Geometry();
    for (const std::string_view name : names) {
        const auto value = CountOf(call, name);
        if (!value || *value > LargestMeasure) {
            return;
        }
        const int number = static_cast<int>(*value);
        (name == "X" ? box.Left : name == "Y" ? box.Top : name == "W" ? box.Width : box.Height) = number;
    }
    MainWindow->SetGeometry(box);
}

} // namespace

std::optional<std::uint32_t> CountOf(const rexx::CommandCall& call, std::string_view name) {
    const auto number = call.Arguments.Number(name);
    if (!number || *number < 0 || *number > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

void rexx_Version(rexx::CommandCall& call) {
    call.Result = VERSION_STRING.View();
}

void rexx_Activate(rexx::CommandCall&) {
    JumpToARexxCmd = JumpActivate;
}

void rexx_Deactivate(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        done = 1;
    }
}

// The lock goes with a window into its icon, and may be ended there.
void rexx_UnlockGui(rexx::CommandCall&) {
    static_cast<void>(UnlockMainWindow());
}

void rexx_Iconify(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        JumpToARexxCmd = JumpIconify;
    }
}

void rexx_Uniconify(rexx::CommandCall&) {
    if (Iconified != 0) {
        JumpToARexxCmd = JumpUniconify;
    }
}

void rexx_LoadPrefs(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        JumpToARexxCmd = JumpLoadPrefs;
    }
}

void rexx_SavePrefs(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        SavePrefs(1);
    }
}

void rexx_QuitNoSave(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        QuitNoSave = 1;
        done = 1;
    }
}

void rexx_Quit(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        done = 1;
    }
}

void rexx_QuitAll(rexx::CommandCall&) {
    if (IsWindowOpen() && CanHaveFurtherWindows()) {
        CloseAllButThisWindow();
        done = 1;
    }
}

void rexx_NewWindow(rexx::CommandCall& call) {
    const auto paths = call.Arguments.Multi("PATH");
    if (IsWindowOpen() && !paths.empty()) {
        OpenNewSolvaneWindow(paths.front());
    }
}

void rexx_MoveWindow(rexx::CommandCall& call) {
    SetBox(call, {"X", "Y"});
}

void rexx_SizeWindow(rexx::CommandCall& call) {
    SetBox(call, {"W", "H"});
}

void rexx_ChangeWindow(rexx::CommandCall& call) {
    SetBox(call, {"X", "Y", "W", "H"});
}

void rexx_WindowToFront(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        MainWindow->ToFront();
    }
}

void rexx_WindowToBack(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        MainWindow->ToBack();
    }
}

void rexx_ZoomWindow(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        MainWindow->SetZoomed(true);
    }
}

void rexx_UnzoomWindow(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        MainWindow->SetZoomed(false);
    }
}

// Another instance tells whether something has been cut or copied.
void rexx_PasteStatus(rexx::CommandCall& call) {
    const auto exists = CountOf(call, "CE");
    if (IsWindowOpen() && exists) {
        ClipExists = *exists != 0 ? 1 : 0;
        SetMenuState();
        SetToolbarState();
    }
}

void rexx_ActivateWindow(rexx::CommandCall&) {
    if (IsWindowOpen()) {
        MainWindow->Activate();
    }
}

void rexx_JumpToScreen(rexx::CommandCall& call) {
    const auto screen = call.Arguments.Text("SCREEN");
    if (IsWindowOpen() && screen) {
        DefaultPubScreenID = *screen;
        JumpToARexxCmd = JumpToNewScreen;
    }
}

} // namespace solvane
