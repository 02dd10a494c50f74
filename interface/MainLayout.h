// The main window's layout: makes its gadgets, knows them by name, and shows texts in them.
// It decides nothing: what stands in the lists comes from content/ and locations/.
#pragma once

#include "platform/intuition/Button.h"
#include "platform/intuition/ClickTab.h"
#include "platform/intuition/Label.h"
#include "platform/intuition/Layout.h"
#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/Page.h"
#include "platform/intuition/PopUpList.h"
#include "platform/intuition/SpeedBar.h"
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
    GadgetBookmarksLeft = 6, // the ends of a bar scroll it
    GadgetBookmarks = 7,
    GadgetBookmarksRight = 8,
    GadgetHistoryChooser = 11,
    GadgetTypeChooser = 12,
    GadgetArchiveChooser = 13,
    GadgetARexxChooser = 14,
    GadgetViewStyleChooser = 15,
    GadgetLayoutChooser = 16,
    GadgetToolbarLeft = 20,
    GadgetToolbar = 21,
    GadgetToolbarRight = 22,
    GadgetUserButtonsLeft = 28,
    GadgetUserButtons = 29,
    GadgetUserButtonsRight = 30,
    GadgetBack = 33,
    GadgetForward = 34,
    GadgetHistory = 35,
    GadgetParent = 36,
    GadgetReload = 37,
    GadgetPath = 38,
    GadgetSearch = 39,
    GadgetAdvancedSearch = 40,
    GadgetViewStyle = 41,
    GadgetLayout = 42,
    GadgetNavigationList = 46,
    GadgetContentList = 49,
};

// The gadgets of the open window; all null while the window is closed. The window owns them.
struct MainObjects {
    intuition::Layout* Root = nullptr; // everything
    // Null while they are switched off.
    intuition::SpeedBar *Bookmarks = nullptr, *Toolbar = nullptr, *UserButtons = nullptr;
    intuition::ClickTab* Tabs = nullptr;
    intuition::Button* Back = nullptr;
    intuition::Button* Forward = nullptr;
    intuition::Button* History = nullptr;
    // They pop up under the buttons that they belong to.
    intuition::PopUpList *HistoryChooser = nullptr, *TypeChooser = nullptr, *ArchiveChooser = nullptr;
    intuition::PopUpList *ARexxChooser = nullptr, *ViewStyleChooser = nullptr, *LayoutChooser = nullptr;
    intuition::Button* Parent = nullptr;
    intuition::Button* Reload = nullptr;
    intuition::StringGadget* Path = nullptr;
    intuition::StringGadget* Search = nullptr;
    intuition::Button* ViewStyle = nullptr;
    intuition::Button* Layout = nullptr;
    intuition::Layout* Panes = nullptr;   // NavCon over Details
    intuition::Layout* NavCon = nullptr;  // the Navigation pane beside ConPre
    intuition::Layout* ConPre = nullptr;  // the Content list over or beside the Preview pane
    intuition::Layout* Details = nullptr; // the Thumbnail pane beside the texts; null without the pane
    intuition::TreeBrowser* Navigation = nullptr; // null without the pane
    intuition::ListBrowser* ContentList = nullptr;
    intuition::Page* Preview = nullptr;     // null without the pane
    intuition::Layout* StatusBar = nullptr; // null while it is switched off, as are its texts
    intuition::Label* StatusLeft = nullptr;
    intuition::Label* StatusRight = nullptr;
};

// --- State ---

extern std::unique_ptr<intuition::Window>
    MainWindow;             // null while closed; written by CreateMainLayout and CloseWindowObject
extern MainObjects Objects; // written by CreateMainLayout and NullAllGadgets
extern Text<128>&StatusBarBuffer1, &StatusBarBuffer2; // what the status bar shows, left and right

// Builds the layout and the (still closed) MainWindow around it. False when it cannot be made.
[[nodiscard]] bool CreateMainLayout();

// Whether there is a window to act on: neither closed nor an icon.
[[nodiscard]] bool IsWindowOpen();

// Brings the open window before all others and lets it have the keys.
void BringWindowToFront();

// Forgets all gadgets, so that no code touches one of a closed window.
void NullAllGadgets();

// Takes the lists off their gadgets, so that rows may be freed.
void DetachAllLists();

// Closes the window and drops it with its gadgets; nothing while it is closed.
void CloseWindowObject();

// Takes the status bar into the open window or out of it, as Prefs.StatusBar says.
void ShowStatusBar();

// Keeps both texts and shows them when the window has a status bar.
void SetStatusBar(std::string_view left, std::string_view right);

// Shows CurrentPath in the path gadget, and whether there is a parent to go to.
void ShowCurrentPath();

// Blocks (count 1), frees (0) or wholly frees (-1) the main window; nothing while it is closed. Blocks nest.
void BlockMainWindow(int count);

// Blocks the open window until UnlockMainWindow or until it is dropped; neither that it is wholly freed nor
// an icon in its place ends it. The status bar says so, since the one who asked for it may be gone: the
// window's close gadget, which works in a blocked window too, is to end it.
void LockMainWindow();
// False when the window was not locked.
bool UnlockMainWindow();

// Lets the window repaint during a long operation; cheap enough to be called per entry.
void KeepWindowAlive();

} // namespace solvane
