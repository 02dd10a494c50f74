#include "interface/MainLayout.h"

#include "interface/DetailsGadgets.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "model/WorkingSet.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Layout.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Requesters.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

std::unique_ptr<intuition::Window> MainWindow;
MainObjects Objects;
std::int32_t ChooserSelected = 0;
Text<128>& StatusBarBuffer1 = ActiveSet.StatusBar1;
Text<128>& StatusBarBuffer2 = ActiveSet.StatusBar2;

namespace {

constexpr std::chrono::milliseconds RepaintInterval(30);
constexpr std::size_t LongestPath = 4096; // what is too long is told, not cut
constexpr std::int32_t LeastPane = 5;     // per cent

template <class Kind>
Kind* AddGadget(intuition::Layout& layout, std::unique_ptr<Kind> gadget, int weight = 0) {
    Kind* made = gadget.get();
    layout.Add(std::move(gadget), weight);
    return made;
}

intuition::Button* AddImageButton(intuition::Layout& layout, GadgetId id, std::string_view image,
                                  std::string_view hint) {
    return AddGadget(layout, std::make_unique<intuition::Button>(id, intuition::ObtainImage(image), hint));
}

// By value of the style; the icon view has no name of its own.
constexpr std::array StyleNames = {MSG_STYLE_LIST,     MSG_STYLE_DETAILS,   MSG_STYLE_TILES,
                                   MSG_STYLE_CONTENT,  MSG_STYLE_THUMBNAIL, MSG_STYLE_THUMBNAIL_DETAILS,
                                   MSG_STYLE_FILMSTRIP};

std::vector<std::string> StyleLabels(std::size_t offered) {
    std::vector<std::string> labels;
    for (std::size_t style = 0; style < std::min(offered, StyleNames.size()); ++style) {
        labels.emplace_back(SAK_LocaleString(StyleNames[style]));
    }
    return labels;
}

void AddHistoryGadgets(intuition::Layout& row) {
    Objects.Back =
        AddImageButton(row, GadgetBack, "PROGDIR:Images/TBImages/back.png", SAK_LocaleString(MSG_HINT_BACK));
    Objects.Forward = AddImageButton(row, GadgetForward, "PROGDIR:Images/TBImages/forward.png",
                                     SAK_LocaleString(MSG_HINT_FORWARD));
    Objects.History = AddImageButton(row, GadgetHistory, "PROGDIR:Images/TBImages/history.png",
                                     SAK_LocaleString(MSG_HINT_HISTORY));
    Objects.HistoryChooser = AddGadget(row, std::make_unique<intuition::PopUpList>(
                                                GadgetHistoryChooser, SAK_LocaleString(MSG_HINT_HISTORY)));
    for (intuition::Button* button : {Objects.Back, Objects.Forward, Objects.History}) {
        button->SetDisabled(true); // until there is a history
    }
}

// The row of navigation gadgets.
std::unique_ptr<intuition::Layout> CreatePathGroup() {
    auto row = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Spacing = 2});
    AddHistoryGadgets(*row);
    Objects.Parent = AddImageButton(*row, GadgetParent, "PROGDIR:Images/TBImages/parent.png",
                                    SAK_LocaleString(MSG_HINT_PARENT));
    Objects.Reload = AddImageButton(*row, GadgetReload, "PROGDIR:Images/TBImages/reload.png",
                                    SAK_LocaleString(MSG_HINT_RELOAD));
    Objects.Path = AddGadget(
        *row, std::make_unique<intuition::StringGadget>(GadgetPath, CurrentPath.View(), LongestPath), 1);
    Objects.Path->SetHint(SAK_LocaleString(MSG_HINT_PATH));
    Objects.ViewStyle =
        AddGadget(*row, std::make_unique<intuition::Chooser>(GadgetViewStyle, StyleLabels(StyleNames.size()),
                                                             SAK_LocaleString(MSG_HINT_VIEW_STYLE)));
    return row;
}

std::unique_ptr<intuition::ListBrowser> CreateContentPane() {
    auto list = std::make_unique<intuition::ListBrowser>(GadgetContentList, intuition::ListKeys::Own);
    list->SetStripes(true);
    Objects.ContentList = list.get();
    return list;
}

int NavigationWeight() {
    return std::clamp(Prefs.NavigationWidth, LeastPane, 100 - LeastPane);
}

void AddNavigationPane() {
    auto tree =
        std::make_unique<intuition::TreeBrowser>(GadgetNavigationList, SAK_LocaleString(MSG_MENU_NAVIGATION));
    Objects.Navigation = tree.get();
    Objects.NavCon->Insert(0, std::move(tree), NavigationWeight());
}

std::unique_ptr<intuition::Layout> CreateNavConGroup() {
    auto group = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Bars = true});
    Objects.NavCon = group.get();
    group->Add(CreateContentPane(), 100 - NavigationWeight());
    if (Prefs.NavigationPane != 0) {
        AddNavigationPane();
    }
    return group;
}

// The panes between the bars, as far as there are any.
void AddPanes(intuition::Layout& root) {
    if (Prefs.DetailsPane == 0) {
        root.Add(CreateNavConGroup(), 1);
        return;
    }
    auto panes = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Vertical, .Bars = true});
    Objects.Panes = panes.get();
    const int height = std::clamp(Prefs.DetailsHeight, LeastPane, 100 - LeastPane);
    panes->Add(CreateNavConGroup(), 100 - height);
    panes->Add(CreateDetailsPaneGroup(), height);
    root.Add(std::move(panes), 1);
}

std::unique_ptr<intuition::Layout> CreateStatusBarGroup() {
    auto row = std::make_unique<intuition::Layout>(
        intuition::LayoutSpec{.Direction = intuition::Orientation::Horizontal, .Spacing = 8, .Margin = 2});
    Objects.StatusLeft = AddGadget(*row, std::make_unique<intuition::Label>(StatusBarBuffer1.View()), 1);
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
    Objects.Tabs =
        AddGadget(*root, std::make_unique<intuition::ClickTab>(GadgetTabs, SAK_LocaleString(MSG_MENU_TABS)));
    root->Add(CreatePathGroup());
    AddPanes(*root);
    if (Prefs.StatusBar != 0) {
        root->Add(CreateStatusBarGroup());
    }
    MainWindow = std::make_unique<intuition::Window>(intuition::WindowSpec{.Title = WindowTitle(),
                                                                           .Left = Prefs.WindowX,
                                                                           .Top = Prefs.WindowY,
                                                                           .Width = Prefs.WindowWidth,
                                                                           .Height = Prefs.WindowHeight},
                                                     std::move(root));
    return true;
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
}

void ShowNavigationPane() {
    const bool isShown = Objects.Navigation != nullptr;
    if (Objects.NavCon == nullptr || isShown == (Prefs.NavigationPane != 0)) {
        return;
    }
    if (isShown) {
        Objects.NavCon->Remove(*Objects.Navigation);
        Objects.Navigation = nullptr;
    } else {
        AddNavigationPane();
        Objects.NavCon->SetWeights({NavigationWeight(), 100 - NavigationWeight()});
    }
}

std::int32_t GetNavigationWidth() {
    if (Objects.Navigation == nullptr) {
        return Prefs.NavigationWidth;
    }
    return Objects.NavCon->Weights().front();
}

std::int32_t GetDetailsHeight() {
    if (Objects.Panes == nullptr) {
        return Prefs.DetailsHeight;
    }
    return Objects.Panes->Weights().back();
}

void ShowViewStyle(std::size_t offered, std::int32_t style) {
    if (Objects.ViewStyle == nullptr) {
        return;
    }
    if (Objects.ViewStyle->Count() != std::min(offered, StyleNames.size())) {
        Objects.ViewStyle->SetLabels(StyleLabels(offered));
    }
    Objects.ViewStyle->SetSelected(style);
}

void SetStatusBar(std::string_view left, std::string_view right) {
    StatusBarBuffer1 = left;
    StatusBarBuffer2 = right;
    if (Objects.StatusLeft != nullptr) {
        Objects.StatusLeft->SetText(StatusBarBuffer1.View());
        Objects.StatusRight->SetText(StatusBarBuffer2.View());
    }
}

void ShowCurrentPath() {
    if (Objects.Path == nullptr) {
        return;
    }
    Objects.Path->SetText(CurrentPath.View());
    const bool isDrawer = CurrentPath.View().find(':') != std::string_view::npos;
    Objects.Parent->SetDisabled(!isDrawer || SAK_IsDeviceRoot(CurrentPath.View()));
    MainWindow->SetTitle(WindowTitle() + " - " + std::string(CurrentPath.View()));
}

void BlockMainWindow(int count) {
    SAK_BlockWindow(MainWindow.get(), count);
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
