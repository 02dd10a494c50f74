#include "locations/TabRecords.h"

#include "content/BuildLists.h"
#include "content/Drawers.h"
#include "content/Selection.h"
#include "interface/MainLayout.h"
#include "interface/TabBar.h"
#include "interface/Tell.h"
#include "locations/EnterDrawer.h"
#include "locations/History.h"
#include "locations/RenamedVolume.h"
#include "model/Prefs.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <string>
#include <utility>

namespace solvane {

namespace {

// A setting that tabs have of their own, and the one of Prefs that it stands in while its tab is active.
template <class Value>
struct TabSetting {
    Value TabSettings::*Own;
    Value PrefsRecord::*InForce;
};
using Direction = TabSetting<std::int16_t>;
using Choice = TabSetting<std::int32_t>;
constexpr std::array Directions = {
    Direction{&TabSettings::WorkbenchSortDirection, &PrefsRecord::WorkbenchSortDirection},
    Direction{&TabSettings::ComputerSortDirection, &PrefsRecord::ComputerSortDirection},
    Direction{&TabSettings::AssignsSortDirection, &PrefsRecord::AssignsSortDirection},
    Direction{&TabSettings::FTPSitesSortDirection, &PrefsRecord::FTPSitesSortDirection},
    Direction{&TabSettings::SearchSortDirection, &PrefsRecord::SearchSortDirection},
    Direction{&TabSettings::ArchiveSortDirection, &PrefsRecord::ArchiveSortDirection},
    Direction{&TabSettings::ContentSortDirection, &PrefsRecord::ContentSortDirection},
};
constexpr std::array Choices = {
    Choice{&TabSettings::ComputerDetailsCISortColumn, &PrefsRecord::ComputerDetailsCISortColumn},
    Choice{&TabSettings::FTPSitesDetailsCISortColumn, &PrefsRecord::FTPSitesDetailsCISortColumn},
    Choice{&TabSettings::ArchiveDetailsCISortColumn, &PrefsRecord::ArchiveDetailsCISortColumn},
    Choice{&TabSettings::ContentDetailsCISortColumn, &PrefsRecord::ContentDetailsCISortColumn},
    Choice{&TabSettings::BookmarksViewStyle, &PrefsRecord::BookmarksViewStyle},
    Choice{&TabSettings::FavoritesViewStyle, &PrefsRecord::FavoritesViewStyle},
    Choice{&TabSettings::WorkbenchViewStyle, &PrefsRecord::WorkbenchViewStyle},
    Choice{&TabSettings::ComputerViewStyle, &PrefsRecord::ComputerViewStyle},
    Choice{&TabSettings::AssignsViewStyle, &PrefsRecord::AssignsViewStyle},
    Choice{&TabSettings::FTPSitesViewStyle, &PrefsRecord::FTPSitesViewStyle},
    Choice{&TabSettings::ArchiveViewStyle, &PrefsRecord::ArchiveViewStyle},
    Choice{&TabSettings::ContentViewStyle, &PrefsRecord::ContentViewStyle},
};

template <class Function>
void ForEachSetting(TabSettings& tab, const Function& function) {
    for (const Direction& each : Directions) {
        function(tab.*each.Own, Prefs.*each.InForce);
    }
    for (const Choice& each : Choices) {
        function(tab.*each.Own, Prefs.*each.InForce);
    }
}

void TakeSettings(TabSettings& tab) {
    ForEachSetting(tab, [](auto& own, const auto& setting) { own = setting; });
}

void PutSettings(TabSettings& tab) {
    ForEachSetting(tab, [](const auto& own, auto& setting) { setting = own; });
}

bool CreateLists(TabsNode& node) {
    node.HistoryList = SAK_CreateGenericList<HistoryNode>();
    node.LinksList = SAK_CreateGenericList<LinksNode>();
    node.ContentList = SAK_CreateGenericList<ContentNode>();
    return node.HistoryList && node.LinksList && node.ContentList;
}

// The first entry is made as that of the tab on show.
void GiveHistory(TabsNode& node) {
    std::swap(static_cast<WorkingSet&>(node), ActiveSet);
    StartHistory();
    std::swap(static_cast<WorkingSet&>(node), ActiveSet);
}

// Takes the rows off the window, with what only the window knows of them.
void TakeRowsAway() {
    if (Objects.ContentList != nullptr) {
        ActiveSet.SelectedRows = Objects.ContentList->SelectedRows();
        ActiveSet.CurrentRow = Objects.ContentList->Current();
    }
    TakeRowsOffWindow();
    ActiveSet.Monitor = SAK_KeepNotify();
    Changes = 0; // what the watch notes while it rests is read when the tab is shown again
}

void RemoveClickTab(std::uint32_t userData) {
    ClickTabNode* tab = FindClickTab(userData);
    if (tab == nullptr) {
        return;
    }
    currTab = currTab == tab ? nullptr : currTab;
    SAK_DeleteGenericListNode(*tabslist, tab);
    TabsOpen = SAK_GenericListCount(*tabslist);
}

void PutName(const RenamedVolume& volume, HistoryNode& entry) {
    if (entry.Location == LocationKind::Drawer) {
        volume.PutIn(entry.Path);
        volume.PutIn(entry.Name);
    }
}

void PutName(const RenamedVolume& volume, WorkingSet& set) {
    for (Text<1024>* path : {&set.Path, &set.PathUndo, &set.PathRead, &set.AwaitedVolume}) {
        volume.PutIn(*path);
    }
    if (set.HistoryList) {
        for (HistoryNode& entry : *set.HistoryList) {
            PutName(volume, entry);
        }
    }
}

// Ends what the active tab shows; what it owns goes with its set.
void DropActiveSet() {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Detach();
    }
    SAK_StopNotify();
    Changes = 0;
    ActiveSet = WorkingSet();
    ActiveTab = nullptr;
}

} // namespace

std::uint32_t MakeTabID() {
    static std::minstd_rand generator(
        static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch().count()));
    std::uint32_t id = 0;
    do {
        id = static_cast<std::uint32_t>(generator()) % TabIDs + SmallestTabID;
    } while (FindTabsNode(id) != nullptr);
    return id;
}

TabsNode* AddTab(std::uint32_t number, std::uint32_t userData) {
    NodePointer<TabsNode> node = TabsList ? SAK_CreateGenericListNode<TabsNode>() : nullptr;
    if (!node || !CreateLists(*node)) {
        Tell(node ? MSG_NO_LIST : MSG_NO_LIST_NODE, RequesterImage::Error);
        return nullptr;
    }
    node->TabNumber = number;
    node->TabUserData = userData;
    TakeSettings(node->Settings);
    node->Location = static_cast<LocationKind>(Prefs.DefaultOpenAt);
    node->Path = Prefs.DefaultOpenAtPath;
    node->PathUndo = node->Path;
    GiveHistory(*node);
    if (FirstTabID == 0) {
        FirstTabID = userData;
    }
    return SAK_AddGenericListNode(*TabsList, std::move(node));
}

TabsNode* AddTabWithLabel(std::uint32_t number, std::uint32_t userData, std::string_view label) {
    TabsNode* node = AddTab(number, userData);
    if (node == nullptr) {
        return nullptr;
    }
    NodePointer<ClickTabNode> tab = SAK_CreateGenericListNode<ClickTabNode>();
    if (!tab) {
        SAK_DeleteGenericListNode(*TabsList, node);
        return nullptr;
    }
    tab->TabNumber = number;
    tab->TabUserData = userData;
    tab->Label = label;
    SAK_AddGenericListNode(*tabslist, std::move(tab));
    TabsOpen = SAK_GenericListCount(*tabslist);
    return node;
}

bool AddSmallTab(int refresh) {
    DetachTabs();
    TabID = MakeTabID();
    const bool added = AddTabWithLabel(TabID, ExtraTab, SAK_LocaleString(MSG_NEW_TAB)) != nullptr;
    if (!added) {
        Tell(MSG_NO_ADD_TAB, RequesterImage::Error);
    }
    if (refresh != 0) {
        AttachTabs();
    }
    return added;
}

TabsNode* FindTabsNode(std::uint32_t userData) {
    if (TabsList) {
        for (TabsNode& node : *TabsList) {
            if (node.TabUserData == userData) {
                return &node;
            }
        }
    }
    return nullptr;
}

ClickTabNode* FindClickTab(std::uint32_t userData) {
    if (tabslist) {
        for (ClickTabNode& tab : *tabslist) {
            if (tab.TabUserData == userData) {
                return &tab;
            }
        }
    }
    return nullptr;
}

void BeforeSwitchTabs(int keepSelection) {
    BeforeSwitchHistory();
    if (keepSelection == 0) {
        SelectContentListItems();
    }
    TakeSettings(ActiveSet.Settings);
    if (!lblist2.empty()) { // else the list shows nothing of this tab
        NoteTopRow();
    }
    CheckLastCharPath();
    CollectPrefs();
    if (ActiveTab != nullptr) {
        static_cast<TabValues&>(*ActiveTab) = ActiveSet;
    }
}

void AfterSwitchTabs(TabsNode& other, int setView) {
    if (&other != ActiveTab) {
        TakeRowsAway();
        if (ActiveTab != nullptr) {
            static_cast<WorkingSet&>(*ActiveTab) = std::move(ActiveSet);
        }
        const TabValues values = other;
        ActiveSet = std::move(static_cast<WorkingSet&>(other));
        static_cast<TabValues&>(other) = values;
        ActiveTab = &other;
        PutSettings(ActiveSet.Settings);
    }
    SwitchHistory();
    if (setView != 0) {
        SetViewStyle(KeepRows::Yes);
    }
}

void GiveSettingToTabs(std::int32_t PrefsRecord::*setting) {
    const auto* found = std::ranges::find(Choices, setting, &Choice::InForce);
    if (!TabsList || found == Choices.end()) {
        return;
    }
    for (TabsNode& node : *TabsList) {
        node.Settings.*found->Own = Prefs.*setting;
    }
}

void RenameVolumeInTabs(const RenamedVolume& volume) {
    if (!TabsList) {
        return;
    }
    DetachTabs();
    for (TabsNode& node : *TabsList) {
        PutName(volume, node);
        if (&node == ActiveTab) {
            PutName(volume, ActiveSet);
        }
        if (node.Location == LocationKind::Drawer && volume.Has(node.Path)) {
            node.RescanTab = 1; // its records have the paths of before
            ClickTabNode* tab = FindClickTab(node.TabUserData);
            if (tab != nullptr && node.TabUserData != ExtraTab) {
                tab->Label = NameOfPath(node.Path);
            }
        }
    }
    AttachTabs();
}

void DeleteTabsNode(std::uint32_t userData) {
    TabsNode* node = FindTabsNode(userData);
    if (node == nullptr) {
        return;
    }
    if (node == ActiveTab) {
        DropActiveSet();
    }
    SAK_DeleteGenericListNode(*TabsList, node);
    RemoveClickTab(userData);
}

void FreeAllTabs() {
    DetachTabs();
    if (ActiveTab != nullptr) {
        DropActiveSet();
    } else {
        FreeContentList(1);
    }
    TabsList.reset();
    tabslist.reset();
    currTab = nullptr;
    TabsOpen = FirstTabID = 0;
}

} // namespace solvane
