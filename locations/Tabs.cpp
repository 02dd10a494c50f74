#include "locations/Tabs.h"

#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "content/Status.h"
#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/TabBar.h"
#include "interface/Tell.h"
#include "locations/EnterDrawer.h"
#include "locations/History.h"
#include "locations/Navigation.h"
#include "locations/TabRecords.h"
#include "locations/VirtualPlaces.h"
#include "media/Preview.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "sak/FilenameSupport.h"
#include "sak/Messages.h"
#include "sak/Notify.h"

#include <string>
#include <utility>

namespace solvane {

namespace {

bool Refuse(MessageNumber text) {
    TellTerminate(text);
    return false;
}

bool AddPlainTab() {
    TabID = MakeTabID();
    return AddTabWithLabel(TabID, TabID, NameOfPath(Prefs.DefaultOpenAtPath)) != nullptr;
}

// A tab at a place of its own, which is read when the tab is first shown.
bool AddTabAt(const TabsNode& place) {
    TabID = MakeTabID();
    const Text<128> label = NameOfPath(place.Path);
    TabsNode* node = AddTabWithLabel(TabID, TabID, label);
    if (node == nullptr) {
        return false;
    }
    const bool isKept = place.Location >= LocationKind::Bookmarks && place.Location <= LocationKind::Aminet;
    node->Location = isKept ? place.Location : LocationKind::Drawer;
    node->Path = node->PathUndo = place.Path;
    if (HistoryNode* entry = SAK_FirstGenericListNode(*node->HistoryList)) {
        entry->Location = node->Location;
        entry->Name = label;
        entry->Path = PathInHistory(node->Location, place.Path);
    }
    return true;
}

// A tab of the window before, with all that it has kept.
bool AddTabAgain(TabsNode& kept) {
    TabID = MakeTabID();
    TabsNode* node = AddTabWithLabel(TabID, TabID, NameOfPath(kept.Path));
    if (node == nullptr) {
        return false;
    }
    static_cast<TabValues&>(*node) = kept;
    if (kept.HistoryList) {
        node->HistoryList = std::move(kept.HistoryList);
        node->CurrentHistory = kept.CurrentHistory;
    }
    return true;
}

bool AddTabsOfStart() {
    bool done = true;
    if (ReopenTabs != 0) {
        for (TabsNode& kept : *CommandLineTabsList) {
            done = done && AddTabAgain(kept);
        }
        SAK_ClearGenericList(*CommandLineTabsList);
        return done;
    }
    if (AtPreferences != 0 || PathSpecified != 0 || SAK_GenericListCount(*StartupTabsList) == 0) {
        return AddPlainTab();
    }
    for (const TabsNode& place : *StartupTabsList) {
        done = done && AddTabAt(place);
    }
    return done;
}

void SelectKeptRows() {
    if (ActiveSet.SelectedRows.size() == lblist2.size()) {
        Objects.ContentList->SelectAll();
        return;
    }
    for (const std::size_t row : ActiveSet.SelectedRows) {
        Objects.ContentList->Select(row, true);
    }
}

// The rows of the tab as they were left, with their selection.
void ShowKeptRows() {
    SetCurrentPath(Text<1024>(CurrentPath));
    BuildContentList_Tabs();
    if (Objects.ContentList != nullptr) {
        SelectKeptRows();
        if (ActiveSet.CurrentRow != intuition::NoRow) {
            Objects.ContentList->SetCurrent(ActiveSet.CurrentRow);
        }
        Objects.ContentList->SetTop(LBTop);
    }
    ActiveSet.SelectedRows = {};
    DetailsPaneSwitchedTabs();
}

// Goes on watching the tab's drawer where it had left off; true when that has changed meanwhile.
bool ResumeMonitor(std::string_view drawer) {
    KeptNotify kept = std::exchange(ActiveSet.Monitor, {});
    if (Prefs.MonitorDrawer == 0) {
        return false;
    }
    if (kept.Path.empty()) {
        SAK_ChangeNotify(drawer);
        return false;
    }
    SAK_ResumeNotify(std::move(kept));
    return SAK_NotifyHasChanged();
}

void ShowDrawerTab() {
    const bool marked = std::exchange(ActiveTab->RescanTab, 0) != 0;
    if (!lblist2.empty()) {
        ShowKeptRows();
        const bool changed = ResumeMonitor(CurrentPath);
        if (marked || changed) {
            ReloadDrawer();
        }
        return;
    }
    SetCurrentPath(Text<1024>(CurrentPath));
    DoReload = LBTop != 0 ? 1 : 0; // as a tab of the window before was left
    if (ScanDrawer()) {
        TellEnteredPlace();
        ShowContentStatus();
    } else {
        DetailsPaneSwitchedTabs(); // what the tab before has shown is none of this one's
    }
}

void ShowTabOfPlaces() {
    const bool marked = std::exchange(ActiveTab->RescanTab, 0) != 0;
    if (lblist2.empty() || marked) {
        SetCurrentPath(Text<1024>(CurrentPath));
        DetailsPaneSwitchedTabs(); // should the place not come
        GoToPlace(WordOfLocation(LBLocation), Arrival::Again);
        return;
    }
    ShowKeptRows();
    if (LBLocation == LocationKind::Workbench && ResumeMonitor(DesktopDrawer)) {
        ReloadLocation();
    }
}

void ShowActiveTab() {
    BlockMainWindow(1);
    Qualifier = 0; // the keys that chose the tab are no wish for another
    switch (LBLocation) {
    case LocationKind::SearchResults:
    case LocationKind::DuplicateFiles:
    case LocationKind::Archive: // cannot be read again
        ActiveTab->RescanTab = 0;
        ShowKeptRows();
        break;
    case LocationKind::Drawer:
        ShowDrawerTab();
        break;
    default:
        ShowTabOfPlaces();
        break;
    }
    SetMenuState();
    SetToolbarState();
    BlockMainWindow(0);
}

// The empty list of a new tab, with the columns of its place.
void SetBlankListContentListBrowser() {
    SetColumnInfo();
    DetailsPaneSwitchedTabs();
    SetCurrentPath(Text<1024>(CurrentPath));
}

// Makes the extra tab a real one and adds another behind it.
void MakeRealTab(ClickTabNode& tab, TabsNode& node) {
    DetachTabs();
    tab.TabUserData = node.TabUserData = node.TabNumber;
    tab.TabNumber = node.TabNumber;
    tab.Label = NameOfPath(node.Path);
    node.Settings = ActiveSet.Settings; // those of the tab that was active
    currTab = &tab;
    static_cast<void>(AddSmallTab(1));
    SetPreviewPaneNone();
    IsNewTab = 1;
}

ClickTabNode* Neighbour(ClickTabNode* tab, bool next) {
    ListNode* other = next ? tab->Links.Successor : tab->Links.Predecessor;
    return static_cast<ClickTabNode*>(other);
}

bool IsExtra(const ClickTabNode* tab) {
    return tab != nullptr && tab->TabUserData == ExtraTab;
}

// Shows another tab after the active one is gone.
void ShowInstead(ClickTabNode* tab) {
    currTab = tab;
    TabClosed = 1;
    AttachTabs();
    SwitchTabs(tab, 0);
    TabClosed = 0;
}

} // namespace

bool SetUpTabs() {
    FreeAllTabs();
    TabsList = SAK_CreateGenericList<TabsNode>();
    tabslist = SAK_CreateGenericList<ClickTabNode>();
    if (!TabsList || !tabslist) {
        return Refuse(MSG_NO_LIST);
    }
    if (ReopenTabs != 0 && SAK_GenericListCount(*CommandLineTabsList) == 0) {
        ReopenTabs = 0;
    }
    return (AddTabsOfStart() && AddSmallTab(0)) || Refuse(MSG_NO_ADD_TAB);
}

void SetFirstTab() {
    TabsNode* first = FindTabsNode(FirstTabID);
    if (first == nullptr) {
        Tell(MSG_NO_FIND_TAB, RequesterImage::Error);
        return;
    }
    currTab = FindClickTab(FirstTabID);
    AfterSwitchTabs(*first, 1);
    AttachTabs();
}

void SwitchTabs(ClickTabNode* tab, int noRebuild) {
    TabsNode* node = tab != nullptr ? FindTabsNode(tab->TabUserData) : nullptr;
    if (node == nullptr) {
        Tell(MSG_NO_FIND_TAB, RequesterImage::Error);
        return;
    }
    if (TabClosed == 0) {
        BeforeSwitchTabs(1);
    }
    if (IsExtra(tab)) {
        MakeRealTab(*tab, *node);
    }
    const bool isOnShow = node == ActiveTab && !lblist2.empty();
    currTab = tab;
    AttachTabs();
    AfterSwitchTabs(*node, 1);
    if (std::exchange(IsNewTab, 0) != 0) {
        SetBlankListContentListBrowser();
    }
    if (noRebuild == 0 && !isOnShow) {
        ShowActiveTab();
    } else if (noRebuild == 0 && std::exchange(node->RescanTab, 0) != 0) {
        ReloadLocation(); // the list on show keeps its selection
    }
}

void OpenNewTab(int noRebuild) {
    if (ClickTabNode* extra = FindClickTab(ExtraTab)) {
        SwitchTabs(extra, noRebuild);
    }
}

bool OpenNewTabFor(const std::function<bool()>& arrive) {
    const std::uint32_t before = currTab != nullptr ? currTab->TabUserData : ExtraTab;
    OpenNewTab(1);
    const std::uint32_t opened = currTab != nullptr ? currTab->TabUserData : ExtraTab;
    if (arrive()) {
        return true;
    }
    ClickTabNode* back = opened != before && before != ExtraTab ? FindClickTab(before) : nullptr;
    if (back != nullptr) {
        SwitchTabs(back, 0);
        static_cast<void>(CloseTabOf(opened));
    }
    return false;
}

void SwitchToTabNumber(std::uint32_t number) {
    if (!tabslist || TabsOpen < 2) {
        return;
    }
    const std::uint32_t place = number == 0 || number > TabsOpen - 1 ? 1 : number;
    SwitchTabs(SAK_GetGenericListNode(*tabslist, place - 1), 0);
}

void NextTab() {
    if (TabsOpen < 3 || currTab == nullptr) {
        return;
    }
    ClickTabNode* next = Neighbour(currTab, true);
    SwitchTabs(next == nullptr || IsExtra(next) ? SAK_FirstGenericListNode(*tabslist) : next, 0);
}

void PreviousTab() {
    if (TabsOpen < 3 || currTab == nullptr) {
        return;
    }
    ClickTabNode* previous = Neighbour(currTab, false);
    SwitchTabs(previous != nullptr ? previous : Neighbour(SAK_LastGenericListNode(*tabslist), false), 0);
}

Closing CloseTab() {
    if (TabsOpen < 3) {
        return Closing::WithWindow;
    }
    if (currTab == nullptr) {
        return Closing::Tab;
    }
    DetachTabs();
    BeforeSwitchTabs(1);
    ClickTabNode* previous = Neighbour(currTab, false);
    ClickTabNode* next = previous != nullptr ? previous : Neighbour(currTab, true);
    DeleteTabsNode(currTab->TabUserData);
    ShowInstead(next);
    return Closing::Tab;
}

Closing CloseTabOf(std::uint32_t userData) {
    if (userData == ExtraTab || FindTabsNode(userData) == nullptr) {
        return Closing::Tab;
    }
    if (currTab != nullptr && currTab->TabUserData == userData) {
        return CloseTab();
    }
    DetachTabs();
    DeleteTabsNode(userData);
    AttachTabs();
    return Closing::Tab;
}

void CloseAllButThisTab() {
    if (TabsOpen <= 2 || currTab == nullptr) {
        return;
    }
    DetachTabs();
    BeforeSwitchTabs(1);
    for (ClickTabNode* tab = SAK_FirstGenericListNode(*tabslist); tab != nullptr;) {
        ClickTabNode* const next = Neighbour(tab, true);
        if (tab != currTab && !IsExtra(tab)) {
            DeleteTabsNode(tab->TabUserData);
        }
        tab = next;
    }
    AttachTabs(); // the active tab has been on show all the time
}

Closing HandleTabBar() {
    if (Objects.Tabs == nullptr) {
        return Closing::Tab;
    }
    TabClosed = 0;
    const intuition::ClickTabEvent event = Objects.Tabs->NextEvent();
    switch (event.Kind) {
    case intuition::ClickTabKind::Pick:
        if (ClickTabNode* tab = FindClickTab(event.UserData)) {
            SwitchTabs(tab, 0);
        }
        break;
    case intuition::ClickTabKind::Close:
        return CloseTabOf(event.UserData);
    case intuition::ClickTabKind::None:
        break;
    }
    return Closing::Tab;
}

} // namespace solvane
