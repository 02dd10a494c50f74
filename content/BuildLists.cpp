#include "content/BuildLists.h"

#include "content/ColumnInfo.h"
#include "content/ContentRows.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "sak/FilenameSupport.h"

#include <memory>

namespace solvane {

namespace {

constexpr int SmallIconHeight = 16; // layout units

std::unique_ptr<ContentRows> Rows; // what the list browser draws from while rows are on show

void CollectRows() {
    lblist2.reserve(SAK_GenericListCount(*ContentList) + 1);
    for (ContentNode& node : *ContentList) {
        if (HasRow(node)) {
            lblist2.push_back({&node, static_cast<std::uint32_t>(node.ObjectKind)});
        } else {
            node.Selected = 0;
        }
    }
    TotalNodes = static_cast<std::uint32_t>(lblist2.size());
}

// The list browser always has a row to show.
void AddEmptyRow() {
    ActuallyZero = lblist2.empty() ? 1 : 0;
    if (ActuallyZero != 0) {
        lblist2.push_back({});
    }
}

void ShowRows() {
    if (ColumnsInForce() != ShownColumns(Prefs.ContentViewStyle)) {
        SetColumnInfo();
    }
    if (Objects.ContentList == nullptr) {
        return;
    }
    Rows = std::make_unique<ContentRows>(ColumnsInForce());
    Objects.ContentList->SetImageHeight(SmallIconHeight);
    Objects.ContentList->SetVerticalSeparators(true);
    Objects.ContentList->Attach(Rows.get());
    Objects.ContentList->SetTop(LBTop);
    const bool details = IsDetailsStyle(Prefs.ContentViewStyle);
    SetSortColumnArrow(details ? Prefs.ContentDetailsCISortColumn : 1);
}

} // namespace

bool HasRow(const ContentNode& node) {
    const std::string_view name = node.EntryName;
    if (Prefs.ShowHiddenEntries == 0 && name.starts_with('.')) {
        return false;
    }
    return AtFTPMount != 0 || Prefs.ProcessInfoFiles == 0 || !SAK_IsInfoFile(name);
}

void BuildContentList() {
    FreeContentRows();
    NumSelected = 0;
    TotalNodes = 0;
    if (!ContentList) {
        return;
    }
    if (Prefs.ContentViewStyle != ViewIcons) {
        CollectRows();
        AddEmptyRow();
    }
    ShowRows();
}

void SetViewStyle() {}

void FreeContentRows() {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Detach();
    }
    Rows.reset();
    lblist2.clear();
}

void NoteTopRow() {
    if (Objects.ContentList != nullptr) {
        LBTop = static_cast<std::uint32_t>(Objects.ContentList->Top());
    }
}

} // namespace solvane
