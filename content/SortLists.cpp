#include "content/SortLists.h"

#include "content/BuildLists.h"
#include "content/ColumnInfo.h"
#include "content/EntryTexts.h"
#include "content/Selection.h"
#include "content/SortKeys.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "prefs/LoadSavePrefs.h"

#include <vector>

namespace solvane {

std::int32_t SortDirection = 0;

namespace {

DetailsColumn SortColumnInForce() {
    const bool details = IsDetailsStyle(Prefs.ContentViewStyle);
    return details ? static_cast<DetailsColumn>(Prefs.ContentDetailsCISortColumn) : DetailsColumn::Name;
}

// Takes the choice over into the preferences. True when the direction was turned round.
bool TakeSortChoice(std::int32_t column) {
    const bool toggled = column == SameColumn || column == Prefs.ContentDetailsCISortColumn;
    if (toggled) {
        Prefs.ContentSortDirection = Prefs.ContentSortDirection == 0 ? 1 : 0;
    }
    if (IsDetailsStyle(Prefs.ContentViewStyle) && column != SameColumn) {
        Prefs.ContentDetailsCISortColumn = column;
    }
    return toggled;
}

// Sorts what is on show and builds its rows anew, the selection kept.
void SortAndRebuild() {
    SelectContentListItems();
    FreeContentRows();
    SortContentList(Prefs.ContentSortDirection);
    BuildContentList();
    HighlightContentListItems();
}

} // namespace

void SortContentList(std::int32_t direction) {
    if (!ContentList || SAK_GenericListCount(*ContentList) < 2) {
        return;
    }
    std::vector<ContentNode*> nodes;
    nodes.reserve(SAK_GenericListCount(*ContentList));
    for (ContentNode& node : *ContentList) {
        nodes.push_back(&node);
    }
    OrderByKey(nodes, SortColumnInForce(), direction == 0 ? SortOrder::Ascending : SortOrder::Descending);
    static_cast<void>(SAK_ReorderGenericList(*ContentList, nodes));
}

void SortBy(std::int32_t column) {
    if (LBLocation != LocationKind::Drawer) {
        return; // the other locations sort with their own lists
    }
    BlockMainWindow(1);
    if (TakeSortChoice(column)) {
        SortDirection = Prefs.ContentSortDirection;
        ReverseContentSortNameType();
    }
    NoteTopRow();
    SortAndRebuild();
    BlockMainWindow(0);
    SavePrefs(0);
}

void DrawersOrder() {
    if (LBLocation != LocationKind::Drawer) {
        return;
    }
    BlockMainWindow(1);
    ReverseContentSortNameType();
    NoteTopRow();
    SortAndRebuild();
    BlockMainWindow(0);
    SavePrefs(0);
}

void ReverseContentSortNameType() {
    if (!ContentList) {
        return;
    }
    for (ContentNode& node : *ContentList) {
        if (node.EntryName.Empty()) {
            continue; // the blank row of an object that is neither drawer nor file
        }
        node.SortPrefix = SortPrefixOf(node.ObjectKind);
        if (SortDirection != 0 && node.SortPrefix != ' ') {
            node.SortPrefix = node.SortPrefix == '0' ? '1' : '0';
        }
    }
}

} // namespace solvane
