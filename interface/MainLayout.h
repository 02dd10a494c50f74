// The main window's layout: makes its gadgets, knows them by name, and shows texts in them.
// It decides nothing: what stands in the lists comes from content/ and locations/.
#pragma once

#include "platform/intuition/Button.h"
#include "platform/intuition/Chooser.h"
#include "platform/intuition/ClickTab.h"
#include "platform/intuition/Label.h"
#include "platform/intuition/Layout.h"
#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/PopUpList.h"
#include "platform/intuition/StringGadget.h"
#include "platform/intuition/TreeBrowser.h"
#include "platform/intuition/Window.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace solvane {

// Ids under which the window reports its gadgets.
enum GadgetId : std::uint16_t {
    GadgetTabs = 2,
    GadgetHistoryChooser = 11,
    GadgetBack = 33,
    GadgetForward = 34,
    GadgetHistory = 35,
    GadgetParent = 36,
    GadgetReload = 37,
    GadgetPath = 38,
    GadgetViewStyle = 43,
    GadgetNavigationList = 46,
    GadgetContentList = 49,
};

// The gadgets of the open window; all null while the window is closed. The window owns them.
struct MainObjects {
    intuition::ClickTab* Tabs = nullptr;
    intuition::Button* Back = nullptr;
    intuition::Button* Forward = nullptr;
    intuition::Button* History = nullptr;
    intuition::PopUpList* HistoryChooser = nullptr; // pops up under it
    intuition::Button* Parent = nullptr;
    intuition::Button* Reload = nullptr;
    intuition::StringGadget* Path = nullptr;
    intuition::Chooser* ViewStyle = nullptr;
    intuition::Layout* Panes = nullptr;  // the Content list over the Details pane; null without the pane
    intuition::Layout* NavCon = nullptr; // the Navigation pane beside the Content list
    intuition::TreeBrowser* Navigation = nullptr; // null without the pane
    intuition::ListBrowser* ContentList = nullptr;
    intuition::Label* StatusLeft = nullptr;
    intuition::Label* StatusRight = nullptr;
};

// --- State ---

extern std::unique_ptr<intuition::Window>
    MainWindow;                      // null while closed; written by CreateMainLayout and CloseWindowObject
extern MainObjects Objects;          // written by CreateMainLayout and NullAllGadgets
extern std::int32_t ChooserSelected; // the choice that a chooser or its menu last made; by the loop
extern Text<128>&StatusBarBuffer1, &StatusBarBuffer2; // what the status bar shows, left and right

// Builds the layout and the (still closed) MainWindow around it. False when it cannot be made.
[[nodiscard]] bool CreateMainLayout();

// Forgets all gadgets, so that no code touches one of a closed window.
void NullAllGadgets();

// Takes the lists off their gadgets, so that rows may be freed.
void DetachAllLists();

// Closes the window and drops it with its gadgets; nothing while it is closed.
void CloseWindowObject();

// Takes the Navigation pane into the open window or out of it, empty, as Prefs.NavigationPane says.
// Everything else in the window stays as it is.
void ShowNavigationPane();

// The weight of the Navigation pane in per cent: as the user has dragged it, or as it is set while there is
// none.
[[nodiscard]] std::int32_t GetNavigationWidth();

// The weight of the Details pane in per cent: as the user has dragged it, or as it is set while there is
// none.
[[nodiscard]] std::int32_t GetDetailsHeight();

// Offers that many of the view styles, from List on, and shows that one as chosen; nothing without a window.
void ShowViewStyle(std::size_t offered, std::int32_t style);

// Keeps both texts and shows them when the window has a status bar.
void SetStatusBar(std::string_view left, std::string_view right);

// Shows CurrentPath in the path gadget, and whether there is a parent to go to.
void ShowCurrentPath();

// Blocks (count 1), frees (0) or wholly frees (-1) the main window; nothing while it is closed. Blocks nest.
void BlockMainWindow(int count);

// Lets the window repaint during a long operation; cheap enough to be called per entry.
void KeepWindowAlive();

} // namespace solvane
