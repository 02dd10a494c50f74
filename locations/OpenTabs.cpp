#include "locations/OpenTabs.h"

#include "content/Selection.h"
#include "interface/MenuState.h"
#include "interface/Windows.h"
#include "locations/Assigns.h"
#include "locations/Devices.h"
#include "locations/Navigation.h"
#include "locations/TabRecords.h"
#include "locations/Tabs.h"
#include "media/Preview.h"
#include "model/Program.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <string>
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
    const DevicesNode* device = DeviceOf(entry);
    if (device != nullptr || LBLocation == LocationKind::FTPSites) {
        const auto path = device != nullptr ? Text<1024>(RootOfDevice(*device)) : entry.EntryPath;
        return {.Word = entry.EntryDisplayName, .MultiAssign = {}, .Name = {}, .Path = path};
    }
    const AssignsNode* assign = AssignOf(entry);
    return {.Word = {},
            .MultiAssign = assign != nullptr && assign->MultiAssign != 0 ? assign->Name : Text<128>(),
            .LeadsTo = entry.LeadsTo,
            .Name = entry.EntryName,
            .Path = entry.EntryPath};
}

// The drawer of a multi-assign is asked for; empty when none was chosen.
Text<1024> PathOf(const TabTarget& target) {
    return target.MultiAssign.Empty() ? target.Path : ChooseDrawerOfAssign(target.MultiAssign);
}

void OpenInTab(const TabTarget& target) {
    const Text<1024> path = PathOf(target);
    if (target.Word.Empty() && path.Empty()) {
        return;
    }
    OpenNewTabFor([&target, &path] {
        return target.Word.Empty() ? GoToKeptPlace(target.LeadsTo, target.Name, path)
                                   : GoToPlace(target.Word);
    });
}

// False when it cannot be started, which has been told.
bool OpenInWindow(const TabTarget& target) {
    const Text<1024> path = PathOf(target);
    return path.Empty() || OpenNewSolvaneWindow(ArgumentOfKeptPlace(target.LeadsTo, target.Name, path));
}

// The records go with their list, should the tab be read anew. Empty too where the selected are sites that
// cannot be reached, which is told.
std::vector<TabTarget> SelectedTargets() {
    SelectContentListItems();
    std::vector<TabTarget> targets;
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && row.Record->Selected != 0 && HasPlaceBehind(*row.Record)) {
            targets.push_back(TargetOf(*row.Record));
        }
    }
    if (LBLocation == LocationKind::FTPSites && !targets.empty() && !CanReachSites()) {
        targets.clear();
    }
    return targets;
}

} // namespace

void CloneTab() {
    Qualifier = 0;
    if (LBLocation == LocationKind::SearchResults || LBLocation == LocationKind::DuplicateFiles) {
        return;
    }
    const std::string_view word = WordOfLocation(LBLocation);
    const Text<1024> path = CurrentPath;
    OpenNewTabFor(
        [word, &path] { return word.empty() ? PopulateContent2(NameOfPath(path), path) : GoToPlace(word); });
    SetPreviewPaneNone();
    SetMenuState();
    SetToolbarState();
}

void OpenMultipleNewTabs() {
    Qualifier = 0;
    const std::vector<TabTarget> targets = SelectedTargets();
    for (const TabTarget& target : targets) {
        OpenInTab(target);
    }
    if (!targets.empty()) {
        SetMenuState();
        SetToolbarState();
    }
}

void OpenMultipleNewSolvaneWindows() {
    Qualifier = 0;
    if (!CanHaveFurtherWindows()) {
        return; // before anything is asked
    }
    const std::vector<TabTarget> targets = SelectedTargets();
    static_cast<void>(std::ranges::all_of(targets, OpenInWindow)); // up to the first that fails
}

void CloneWindow() {
    if (!TabsList) {
        return;
    }
    BeforeSwitchTabs(1);
    std::vector<std::string> places;
    for (const TabsNode& node : *TabsList) {
        if (node.TabUserData != ExtraTab && CanBeReopened(node.Location)) {
            places.push_back(ArgumentOfKeptPlace(node.Location, node.Path, node.Path));
        }
    }
    StartInstance(places);
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
