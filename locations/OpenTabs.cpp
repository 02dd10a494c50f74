#include "locations/OpenTabs.h"

#include "content/Selection.h"
#include "interface/MenuState.h"
#include "locations/Navigation.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "media/Preview.h"
#include "model/Program.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <utility>
#include <vector>

namespace solvane {

namespace {

bool CanBeReopened(LocationKind location) {
    return location != LocationKind::None && location != LocationKind::SearchResults &&
           location != LocationKind::DuplicateFiles && location != LocationKind::Archive;
}

// What a rebuilt window needs of a tab: all but its rows and what hangs on the window that goes.
NodePointer<TabsNode> WithoutRows(TabsNode& node) {
    NodePointer<TabsNode> kept = SAK_CreateGenericListNode<TabsNode>();
    if (kept) {
        static_cast<TabValues&>(*kept) = node;
        WorkingSet& set = &node == ActiveTab ? ActiveSet : static_cast<WorkingSet&>(node);
        kept->HistoryList = std::move(set.HistoryList);
        kept->CurrentHistory = std::exchange(set.CurrentHistory, nullptr);
    }
    return kept;
}

void AddTabAtComputer() {
    if (NodePointer<TabsNode> node = SAK_CreateGenericListNode<TabsNode>()) {
        node->Settings = ActiveSet.Settings;
        node->Location = LocationKind::Computer;
        node->Path = SAK_LocaleString(MSG_COMPUTER);
        SAK_AddGenericListNode(*CommandLineTabsList, std::move(node));
    }
}

} // namespace

void CloneTab() {
    Qualifier = 0;
    if (LBLocation == LocationKind::SearchResults || LBLocation == LocationKind::DuplicateFiles) {
        return;
    }
    const std::string_view word = WordOfLocation(LBLocation);
    const Text<1024> path = CurrentPath;
    OpenNewTab(1);
    if (!word.empty()) {
        GoToPlace(word);
    } else {
        PopulateContent2(NameOfPath(path), path);
    }
    SetPreviewPaneNone();
    SetMenuState();
    SetToolbarState();
}

void OpenMultipleNewTabs() {
    Qualifier = 0;
    SelectContentListItems();
    struct Target {
        LocationKind LeadsTo;
        Text<128> Name;
        Text<1024> Path, Key;
    };
    const bool areSites = LBLocation == LocationKind::FTPSites;
    std::vector<Target> targets; // records go with their list, should the tab be read anew
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && row.Record->Selected != 0 && IsDrawerKind(row.Record->ObjectKind) &&
            !row.Record->EntryName.Empty()) {
            targets.push_back({row.Record->LeadsTo, row.Record->EntryName, row.Record->EntryPath,
                               row.Record->EntryDisplayName});
        }
    }
    for (const Target& target : targets) {
        OpenNewTab(1);
        if (areSites) {
            GoToPlace(target.Key);
        } else {
            GoToKeptPlace(target.LeadsTo, target.Name, target.Path);
        }
    }
    SetMenuState();
    SetToolbarState();
}

void GetOpenTabs() {
    SAK_ClearGenericList(*CommandLineTabsList);
    ReopenTabs = 1;
    Offset = 1;
    if (!TabsList || ActiveTab == nullptr) {
        return;
    }
    BeforeSwitchTabs(0);
    bool passed = false;
    for (TabsNode& node : *TabsList) {
        if (node.TabUserData == ExtraTab) {
            continue;
        }
        if (!CanBeReopened(node.Location)) {
            passed = true;
            continue;
        }
        if (NodePointer<TabsNode> kept = WithoutRows(node)) {
            SAK_AddGenericListNode(*CommandLineTabsList, std::move(kept));
            Offset = &node == ActiveTab ? SAK_GenericListCount(*CommandLineTabsList) : Offset;
        }
    }
    if (passed && SAK_GenericListCount(*CommandLineTabsList) == 0) {
        AddTabAtComputer();
    }
}

} // namespace solvane
