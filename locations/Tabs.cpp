#include "locations/Tabs.h"

#include "content/Drawers.h"
#include "interface/MainLayout.h"
#include "model/Program.h"

#include <utility>

namespace solvane {

namespace {

bool CanBeReopened(LocationKind location) {
    return location != LocationKind::None && location != LocationKind::SearchResults &&
           location != LocationKind::DuplicateFiles && location != LocationKind::Archive;
}

} // namespace

bool SetUpTabs() {
    return true;
}

void SetFirstTab() {}

void OpenNewTab(int /*noRebuild*/) {}

void SwitchToTabNumber(std::uint32_t /*number*/) {}

void GetOpenTabs() {
    SAK_ClearGenericList(*CommandLineTabsList);
    ReopenTabs = 1;
    Offset = 0;
    if (!CanBeReopened(LBLocation)) {
        return;
    }
    CheckLastCharPath();
    NodePointer<TabsNode> node = SAK_CreateGenericListNode<TabsNode>();
    if (!node) {
        return;
    }
    node->Location = LBLocation;
    node->Path = CurrentPath;
    node->LBTop =
        Objects.ContentList != nullptr ? static_cast<std::uint32_t>(Objects.ContentList->Top()) : LBTop;
    SAK_AddGenericListNode(*CommandLineTabsList, std::move(node));
}

void FreeAllTabs(int freeContent) {
    if (freeContent != 0) {
        FreeContentList(1);
    }
}

} // namespace solvane
