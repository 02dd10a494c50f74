#include "automation/ContentEvents.h"

#include "automation/OpenEntries.h"
#include "content/ColumnInfo.h"
#include "content/FileTypes.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/Status.h"
#include "content/ViewStyles.h"
#include "fileops/RenameFiles.h"
#include "interface/DetailsGadgets.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "interface/Tell.h"
#include "locations/PlaceFigures.h"
#include "locations/PlaceLists.h"
#include "model/Prefs.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <string>

namespace solvane {

namespace {

using intuition::ListEvent;
using intuition::ListEventKind;

ContentNode* RecordOf(std::size_t row) {
    return row < lblist2.size() ? lblist2[row].Record : nullptr;
}

// --- Click ---

// A file whose type a scan has not looked for is typed when it is clicked.
void TypeLate(ContentNode& node) {
    const bool isUntyped =
        Prefs.DetermineDatatype == 1 && AtFTPMount == 0 && node.DatatypeName == SAK_LocaleString(MSG_FILE);
    if (!isUntyped || IsDrawerKind(node.ObjectKind) || SAK_IsInfoFile(node.EntryName) ||
        node.EntryPath.View() == PathTooLong) {
        return;
    }
    GetFileType(node);
    CollectOwnFacts(node);
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Refresh();
    }
}

void ServeClick(std::size_t row) {
    SelectContentListItems();
    const bool deselects = Prefs.PersistentSelect != 0 && RecordOf(row) != nullptr &&
                           Objects.ContentList != nullptr && !Objects.ContentList->IsSelected(row);
    if (FiguresOnShow() == Figures::Bytes) {
        ContentNode* entry = deselects ? nullptr : OnlySelectedEntry();
        if (entry != nullptr) {
            TypeLate(*entry);
        }
        RefreshBytes();
    }
    if (NumSelected == 1 && deselects) {
        TellPlace();
    } else {
        TellContentSelection();
    }
}

// --- Columns ---

void TellFigures() {
    switch (FiguresOnShow()) {
    case Figures::OfPlaces:
        DetailsPane4();
        break;
    case Figures::Counts:
        ShowCountStatus(); // places have no bytes
        break;
    default:
        ShowContentStatus();
        break;
    }
}

void ServeTitleClick(std::size_t column) {
    if (column >= ColumnsInForce().size()) {
        return;
    }
    const DetailsColumn clicked = ColumnsInForce()[column];
    if (clicked == DetailsColumn::Icon) {
        Prefs.DrawersOrder = (Prefs.DrawersOrder + 1) % 3;
        DrawersOrder();
        SetMenuState();
    } else {
        SortBy(static_cast<std::int32_t>(clicked));
    }
    TellFigures();
}

void ServeColumns() {
    GetColumnInfoWidths();
    if (LBLocation == LocationKind::Computer && Objects.ContentList != nullptr) {
        Objects.ContentList->Refresh();
    }
}

// --- Inline rename ---

// Gives the entry the name that was typed into its row. The row shows the record's name again whatever comes
// of it.
void FinishInlineRename(std::size_t row) {
    ContentNode* node = RecordOf(row);
    if (node == nullptr || LBLocation != LocationKind::Drawer) {
        return;
    }
    const Text<128> name = Objects.ContentList->EditedText();
    if (name.Empty() || name == node->EntryName) {
        return; // the same but for case: nothing happens, which is intended
    }
    if (NameIsTaken(node->ObjectKind, name)) {
        Tell(IsDrawerKind(node->ObjectKind) ? MSG_DRAWER_EXISTS : MSG_FILE_EXISTS, RequesterImage::Warning);
    } else if (RenameFiles(Text<128>(node->EntryName), name, ShowAnew::No)) {
        Details1Buffer = name;
        SetDetailsGadBuffer(0);
    }
    Objects.ContentList->Refresh();
}

void Serve(const ListEvent& event) {
    switch (event.Kind) {
    case ListEventKind::Select:
        ServeClick(event.Row);
        break;
    case ListEventKind::DoubleClick:
        OpenRow(event.Row);
        break;
    case ListEventKind::TitleClick:
        ServeTitleClick(event.Column);
        break;
    case ListEventKind::ColumnsChanged:
        ServeColumns();
        break;
    case ListEventKind::EditDone:
        FinishInlineRename(event.Row);
        break;
    default:
        break;
    }
}

} // namespace

void HandleContentListBrowser() {
    if (Objects.ContentList != nullptr) {
        Serve(Objects.ContentList->NextEvent());
    }
}

void RowClicked(std::size_t row) {
    ServeClick(row);
}

bool StartInlineRename() {
    const std::int32_t style = ViewStyleInForce();
    const bool hasNames =
        style == ViewList || style == ViewDetails || style == ViewThumbnailDetails || style == ViewIcons;
    SelectContentListItems();
    if (Prefs.EnableInlineRename == 0 || LBLocation != LocationKind::Drawer || NumSelected != 1 ||
        !hasNames || Objects.ContentList == nullptr) {
        return false;
    }
    const std::size_t row = Objects.ContentList->SelectedRows().front();
    const auto& columns = ColumnsInForce();
    const auto name = std::ranges::find(columns, DetailsColumn::Name);
    const ContentNode* node = RecordOf(row);
    const bool canEdit = name != columns.end() && node != nullptr;
    if (canEdit) {
        Objects.ContentList->EditCell(row, static_cast<std::size_t>(name - columns.begin()), node->EntryName,
                                      Text<128>::Limit);
    }
    return canEdit;
}

} // namespace solvane
