#include "content/Selection.h"

#include "content/Status.h"
#include "interface/MainLayout.h"
#include "model/Content.h"

namespace solvane {

namespace {

std::string KeyOf(const ContentNode& node) {
    std::string key(1, static_cast<char>('0' + static_cast<char>(node.ObjectKind)));
    return key.append(node.EntryName.View());
}

void ClearRecords() {
    if (ContentList) {
        for (ContentNode& node : *ContentList) {
            node.Selected = 0;
        }
    }
    NumSelected = 0;
}

} // namespace

void SelectContentListItems() {
    if (Objects.ContentList == nullptr) {
        return;
    }
    ClearRecords();
    for (const std::size_t row : Objects.ContentList->SelectedRows()) {
        if (row < lblist2.size() && lblist2[row].Record != nullptr) {
            lblist2[row].Record->Selected = 1;
            ++NumSelected;
        }
    }
}

void HighlightContentListItems() {
    NumSelected = 0;
    for (std::size_t row = 0; row < lblist2.size(); ++row) {
        const ContentNode* record = lblist2[row].Record;
        if (record == nullptr || record->Selected == 0) {
            continue;
        }
        ++NumSelected;
        if (Objects.ContentList != nullptr) {
            Objects.ContentList->Select(row, true);
        }
    }
}

void ClearSelectedFiles() {
    ClearRecords();
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->ClearSelection();
    }
}

KeptSelection NoteSelection() {
    KeptSelection selection;
    SelectContentListItems();
    if (ContentList && NumSelected != 0) {
        for (const ContentNode& node : *ContentList) {
            if (node.Selected != 0) {
                selection.Entries.insert(KeyOf(node));
            }
        }
    }
    return selection;
}

void RestoreSelection(const KeptSelection& selection) {
    if (selection.Entries.empty()) {
        return;
    }
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && selection.Entries.contains(KeyOf(*row.Record))) {
            row.Record->Selected = 1;
        }
    }
    HighlightContentListItems();
    RefreshBytes();
}

} // namespace solvane
