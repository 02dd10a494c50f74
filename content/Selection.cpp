#include "content/Selection.h"

#include "content/Status.h"
#include "interface/MainLayout.h"
#include "model/Content.h"

#include <algorithm>
#include <utility>

namespace solvane {

namespace {

std::string KeyOf(const ContentNode& node) {
    std::string key(1, static_cast<char>('0' + static_cast<char>(node.ObjectKind)));
    return key.append(node.EntryName.View());
}

// Walks entries in display order and tells for each that a selection names which of its name it is.
class TwinCounter {
public:
    explicit TwinCounter(const KeptSelection& selection) : Kept(selection) {}

    // The selected places of the name, null when none was selected, and the place of this entry.
    std::pair<const std::vector<std::uint32_t>*, std::uint32_t> Next(const ContentNode& node) {
        const auto kept = Kept.Entries.find(KeyOf(node));
        if (kept == Kept.Entries.end()) {
            return {nullptr, 0};
        }
        return {&kept->second, Seen[&kept->second]++};
    }

private:
    const KeptSelection& Kept;
    std::unordered_map<const std::vector<std::uint32_t>*, std::uint32_t> Seen; // so many of that name
};

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
    NumSelected = 0;
    for (std::size_t row = 0; row < lblist2.size(); ++row) { // records without a row are never selected
        ContentNode* record = lblist2[row].Record;
        if (record != nullptr) {
            record->Selected = Objects.ContentList->IsSelected(row) ? 1 : 0;
            NumSelected += record->Selected;
        }
    }
}

void HighlightContentListItems() {
    std::vector<std::size_t> selected;
    for (std::size_t row = 0; row < lblist2.size(); ++row) {
        const ContentNode* record = lblist2[row].Record;
        if (record != nullptr && record->Selected != 0) {
            selected.push_back(row);
        }
    }
    NumSelected = static_cast<std::int32_t>(selected.size());
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->SelectRows(selected);
    }
}

ContentNode* OnlySelectedEntry() {
    if (NumSelected != 1) {
        return nullptr;
    }
    const auto rows =
        Objects.ContentList != nullptr ? Objects.ContentList->SelectedRows() : std::vector<std::size_t>();
    const bool isInStep =
        rows.size() == 1 && rows.front() < lblist2.size() && lblist2[rows.front()].Record != nullptr;
    return isInStep ? lblist2[rows.front()].Record : FindFirstSelectedContentNode();
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
    if (!ContentList || NumSelected == 0) {
        return selection;
    }
    for (const ContentNode& node : *ContentList) {
        if (node.Selected != 0) {
            selection.Entries.try_emplace(KeyOf(node));
        }
    }
    TwinCounter twins(selection);
    for (const ContentNode& node : *ContentList) {
        if (const auto [places, place] = twins.Next(node); places != nullptr && node.Selected != 0) {
            selection.Entries[KeyOf(node)].push_back(place); // in ascending order
        }
    }
    return selection;
}

void RestoreSelection(const KeptSelection& selection) {
    if (selection.Entries.empty()) {
        return;
    }
    TwinCounter twins(selection);
    for (const ListRow& row : lblist2) {
        if (row.Record == nullptr) {
            continue;
        }
        const auto [places, place] = twins.Next(*row.Record);
        if (places != nullptr && std::binary_search(places->begin(), places->end(), place)) {
            row.Record->Selected = 1;
        }
    }
    HighlightContentListItems();
    RefreshSelectedBytes();
}

} // namespace solvane
