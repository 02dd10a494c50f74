#include "locations/OpenTabs.h"

#include "content/Selection.h"
#include "interface/MenuState.h"
#include "locations/Assigns.h"
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

// Where a selected row leads. Word: by what it is routed; else one of the rest counts.
struct TabTarget {
    Text<1024> Word;
    Text<128> MultiAssign; // which of its drawers is asked
    LocationKind LeadsTo = LocationKind::Drawer;
    Text<128> Name;
    Text<1024> Path;
};

// A drive without a medium has nothing to show.
bool HasPlaceBehind(const ContentNode& entry) {
    const DevicesNode* device = DeviceOf(entry);
    const bool isEmpty = device != nullptr && device->Mounted == 0;
    return IsDrawerKind(entry.ObjectKind) && !entry.EntryName.Empty() && !isEmpty;
}

TabTarget TargetOf(const ContentNode& entry) {
    if (DeviceOf(entry) != nullptr || LBLocation == LocationKind::FTPSites) {
        return {.Word = entry.EntryDisplayName, .MultiAssign = {}, .Name = {}, .Path = {}};
    }
    const AssignsNode* assign = AssignOf(entry);
    return {.Word = {},
            .MultiAssign = assign != nullptr && assign->MultiAssign != 0 ? assign->Name : Text<128>(),
            .LeadsTo = entry.LeadsTo,
            .Name = entry.EntryName,
            .Path = entry.EntryPath};
}

void OpenInTab(const TabTarget& target) {
    const Text<1024> path =
        target.MultiAssign.Empty() ? target.Path : ChooseDrawerOfAssign(target.MultiAssign);
    if (target.Word.Empty() && path.Empty()) {
        return; // none was chosen
    }
    OpenNewTab(1);
    if (!target.Word.Empty()) {
        GoToPlace(target.Word);
    } else {
        GoToKeptPlace(target.LeadsTo, target.Name, path);
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
    std::vector<TabTarget> targets; // records go with their list, should the tab be read anew
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && row.Record->Selected != 0 && HasPlaceBehind(*row.Record)) {
            targets.push_back(TargetOf(*row.Record));
        }
    }
    if (LBLocation == LocationKind::FTPSites && FoundFTPMount == 0 && !targets.empty()) {
        GoToPlace(targets.front().Word); // tells that there is none, and opens no tab
        return;
    }
    for (const TabTarget& target : targets) {
        OpenInTab(target);
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
