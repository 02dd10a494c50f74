#include "interface/MainLayout.h"

#include "interface/Choosers.h"
#include "interface/DetailsGadgets.h"
#include "interface/Panes.h"
#include "interface/Screens.h"
#include "interface/SpeedBars.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "model/WorkingSet.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Layout.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

#include <chrono>
#include <string>
#include <utility>

namespace solvane {

std::unique_ptr<intuition::Window> MainWindow;
MainObjects Objects;
Text<128>& StatusBarBuffer1 = ActiveSet.StatusBar1;
Text<128>& StatusBarBuffer2 = ActiveSet.StatusBar2;

namespace {

constexpr std::chrono::milliseconds RepaintInterval(30);
constexpr std::size_t LongestPath = 4096; // what is too long is told, not cut
constexpr std::size_t LongestSearch = 127;
constexpr int SearchWidth = 120; // layout units

bool IsLocked = false; // the window carries a block for it

template <class Kind>
Kind* AddGadget(intuition::Layout& layout, std::unique_ptr<Kind> gadget, int weight = 0) {
    Kind* made = gadget.get();
    layout.Add(std::move(gadget), weight);
    return made;
}

intuition::Button* AddImageButton(intuition::Layout& layout, GadgetId id, std::string_view picture,
                                  std::string_view hint) {
    return AddGadget(layout, CreatePictureButton(id, picture, hint));
}

void AddHistoryGadgets(intuition::Layout& row) {
    Objects.Back = AddImageButton(row, GadgetBack, "back", SAK_LocaleString(MSG_HINT_BACK));
    Objects.Forward = AddImageButton(row, GadgetForward, "forward", SAK_LocaleString(MSG_HINT_FORWARD));
    Objects.History = AddImageButton(row, GadgetHistory, "history", SAK_LocaleString(MSG_HINT_HISTORY));
    for (intuition::Button* button : {Objects.Back, Objects.Forward, Objects.History}) {
        button->SetDisabled(true); // until there is a history
    }
}

void AddSearchGadgets(intuition::Layout& row) {
    Objects.Search =
        AddGadget(row, std::make_unique<intuition::StringGadget>(GadgetSearch, "", LongestSearch));
    Objects.Search->SetHint(SAK_LocaleString(MSG_HINT_SEARCH));
    Objects.Search->SetPlaceholder(SAK_LocaleString(MSG_HINT_SEARCH));
    Objects.Search->SetFixed(SearchWidth, -1);
    AddImageButton(row, GadgetAdvancedSearch, "search", SAK_LocaleString(MSG_HINT_ADVANCED_SEARCH));
}

// The row of navigation gadgets.
std::unique_ptr<intuition::Layout> CreatePathGroup() {
    auto row = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Spacing = 2});
    AddHistoryGadgets(*row);
    Objects.Parent = AddImageButton(*row, GadgetParent, "parent", SAK_LocaleString(MSG_HINT_PARENT));
    Objects.Reload = AddImageButton(*row, GadgetReload, "reload", SAK_LocaleString(MSG_HINT_RELOAD));
    Objects.Path = AddGadget(
        *row, std::make_unique<intuition::StringGadget>(GadgetPath, CurrentPath.View(), LongestPath), 1);
    Objects.Path->SetHint(SAK_LocaleString(MSG_HINT_PATH));
    AddSearchGadgets(*row);
    Objects.ViewStyle =
        AddImageButton(*row, GadgetViewStyle, "viewstyle", SAK_LocaleString(MSG_HINT_VIEW_STYLE));
    Objects.Layout = AddImageButton(*row, GadgetLayout, "layout", SAK_LocaleString(MSG_HINT_LAYOUT));
    return row;
}

// While a script holds the window that is told, and not what the tab on show has to say.
std::string_view LeftStatus() {
    return IsLocked ? SAK_LocaleString(MSG_WINDOW_LOCKED) : StatusBarBuffer1.View();
}

void ShowStatus() {
    if (Objects.StatusLeft != nullptr) {
        Objects.StatusLeft->SetText(LeftStatus());
        Objects.StatusRight->SetText(StatusBarBuffer2.View());
    }
}

std::unique_ptr<intuition::Layout> CreateStatusBarGroup() {
    auto row = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Spacing = 8, .Margin = 2});
    Objects.StatusBar = row.get();
    Objects.StatusLeft = AddGadget(*row, std::make_unique<intuition::Label>(LeftStatus()), 1);
    Objects.StatusRight =
        AddGadget(*row, std::make_unique<intuition::Label>(StatusBarBuffer2.View(), intuition::Align::Right));
    return row;
}

// Tells windows apart when there are several.
std::string WindowTitle() {
    std::string title(RequesterTitle.View());
    if (PortNumber > 1) {
        title += " " + std::to_string(PortNumber);
    }
    return title;
}

} // namespace

bool CreateMainLayout() {
    auto root = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Vertical, .Spacing = 4, .Margin = 4});
    Objects.Root = root.get();
    Objects.Tabs =
        AddGadget(*root, std::make_unique<intuition::ClickTab>(GadgetTabs, SAK_LocaleString(MSG_MENU_TABS)));
    root->Add(CreatePathGroup());
    CreateHiddenChoosers(*root);
    root->Add(CreateNavConPreDetGroup(), 1);
    ShowSpeedBars();
    ShowStatusBar();
    MainWindow =
        std::make_unique<intuition::Window>(intuition::WindowSpec{.Title = WindowTitle(),
                                                                  .Left = Prefs.WindowX,
                                                                  .Top = Prefs.WindowY,
                                                                  .Width = Prefs.WindowWidth,
                                                                  .Height = Prefs.WindowHeight,
                                                                  .Screen = std::string(ActiveScreen.View())},
                                            std::move(root));
    return true;
}

bool IsWindowOpen() {
    return MainWindow && MainWindow->IsOpen();
}

void BringWindowToFront() {
    MainWindow->ToFront();
    MainWindow->Activate();
}

void NullAllGadgets() {
    Objects = MainObjects();
    ForgetDetailsGadgets();
}

void DetachAllLists() {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Detach();
    }
}

void CloseWindowObject() {
    if (!MainWindow) {
        return;
    }
    DetachAllLists();
    NullAllGadgets();
    MainWindow->Close();
    MainWindow.reset();
    IsLocked = false; // it went with its window
    GoFullScreen = 0; // the next one opens at its stored box
}

void ShowStatusBar() {
    const bool isShown = Objects.StatusBar != nullptr;
    if (Objects.Root == nullptr || isShown == (Prefs.StatusBar != 0)) {
        return;
    }
    if (isShown) {
        Objects.Root->Remove(*Objects.StatusBar);
        Objects.StatusBar = nullptr;
        Objects.StatusLeft = Objects.StatusRight = nullptr;
    } else {
        Objects.Root->Add(CreateStatusBarGroup());
    }
}

void SetStatusBar(std::string_view left, std::string_view right) {
    StatusBarBuffer1 = left;
    StatusBarBuffer2 = right;
    ShowStatus();
}

void ShowCurrentPath() {
    if (Objects.Path == nullptr) {
        return;
    }
    Objects.Path->SetText(CurrentPath.View());
    Objects.Parent->SetDisabled(CurrentPath.View().find(':') == std::string_view::npos); // no drawer
    MainWindow->SetTitle(WindowTitle() + " - " + std::string(CurrentPath.View()));
}

void BlockMainWindow(int count) {
    SAK_BlockWindow(MainWindow.get(), count);
    if (count < 0 && IsLocked) {
        SAK_BlockWindow(MainWindow.get(), 1);
    }
}

void LockMainWindow() {
    if (IsLocked || !IsWindowOpen()) {
        return;
    }
    IsLocked = true;
    BlockMainWindow(1);
    ShowStatus();
}

bool UnlockMainWindow() {
    if (!IsLocked) {
        return false;
    }
    IsLocked = false;
    BlockMainWindow(0);
    ShowStatus();
    return true;
}

void KeepWindowAlive() {
    using Clock = std::chrono::steady_clock;
    static Clock::time_point lastRepaint = Clock::now();
    const Clock::time_point now = Clock::now();
    if (MainWindow && now - lastRepaint >= RepaintInterval) {
        lastRepaint = now;
        static_cast<void>(exec::CheckSignal(0));
    }
}

} // namespace solvane
