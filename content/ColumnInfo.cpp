#include "content/ColumnInfo.h"

#include "content/ViewStyles.h"
#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "platform/locale/Locale.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/StringFunctions.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

namespace solvane {

namespace {

constexpr int PictureMargins = 10;               // layout units on both sides of a large picture
constexpr int CellMargins = 14;                  // layout units on both sides of a cell's text
constexpr int ArrowWidth = 16;                   // layout units beside a title for the arrow of the sort
constexpr std::uint32_t SampleDate = 1538337599; // 30 September 2026, 19:59:59
constexpr std::int32_t NameColumn = 1;           // in every set

std::vector<DetailsColumn> ColumnsOnScreen; // what the list browser has now; empty: none were set
std::vector<int> WidthsOnScreen;            // theirs, as last set or taken over
int IconWidthOnScreen = 0;
bool FittedOnScreen = false; // the widths are those that the rows need

int IconWidthOf(std::int32_t style) {
    switch (style) {
    case ViewTiles:
        return TilesIconSide() + PictureMargins;
    case ViewContent:
        return Prefs.Content_0Width;
    case ViewThumbnail:
    case ViewThumbnailDetails:
        return ThumbnailBox().Width + PictureMargins;
    default:
        return IconColumnWidth;
    }
}

bool IsShown(DetailsColumn column) {
    return std::any_of(ShowDetailsColumnsList->begin(), ShowDetailsColumnsList->end(),
                       [column](const ColumnInfoNode& node) {
                           return node.Shown != 0 && node.ColumnNumber == static_cast<std::uint32_t>(column);
                       });
}

void NoteNeededFacts() {
    ColInfo_GetDimensions = IsShown(DetailsColumn::Dimensions) ? 1 : 0;
    ColInfo_GetVersion = IsShown(DetailsColumn::Version) ? 1 : 0;
    ColInfo_GetMP3 = 0;
    for (auto number = static_cast<std::int32_t>(DetailsColumn::Title);
         number <= static_cast<std::int32_t>(DetailsColumn::Codec); ++number) {
        if (IsShown(static_cast<DetailsColumn>(number))) {
            ColInfo_GetMP3 = 1;
        }
    }
}

bool AddColumn(GenericList<ColumnInfoNode>& columns, std::uint32_t number, std::int32_t width, bool shown) {
    NodePointer<ColumnInfoNode> node = SAK_CreateGenericListNode<ColumnInfoNode>();
    if (!node) {
        return false;
    }
    node->ColumnNumber = number;
    node->Shown = shown ? 1 : 0;
    node->Width = width;
    SAK_AddGenericListNode(columns, std::move(node));
    return true;
}

// Fills the list of that set as it is at first; nothing where there is no such list.
bool RestoreColumns(ColumnSet set) {
    const ColumnSetInfo& info = InfoOf(set);
    if (!*info.List) {
        return true;
    }
    SAK_ClearGenericList(**info.List);
    return std::ranges::all_of(info.Columns, [&info](const ColumnDefault& column) {
        return AddColumn(**info.List, SAK_GenericListCount(**info.List), column.Width, column.Shown);
    });
}

bool RestoreWhenEmpty(ColumnSet set) {
    const ColumnList& list = *InfoOf(set).List;
    return !list || SAK_GenericListCount(*list) > 0 || RestoreColumns(set);
}

constexpr std::array ListedSets = {ColumnSet::ComputerCI, ColumnSet::ArchiveCI, ColumnSet::DetailsCI};

ColumnInfoNode* NodeOf(DetailsColumn column) {
    return FindNode(*WhichCIList, [column](const ColumnInfoNode& node) {
        return node.ColumnNumber == static_cast<std::uint32_t>(column);
    });
}

// Null for a column that the set does not have.
const ColumnDefault* DefaultOf(DetailsColumn column) {
    const auto columns = InfoOf(WhichCI).Columns;
    const auto number = static_cast<std::size_t>(column);
    return number < columns.size() ? &columns[number] : nullptr;
}

// The longest text that a column usually shows; empty where there is no usual one.
std::string SampleText(DetailsColumn column) {
    if (WhichCI != ColumnSet::DetailsCI) {
        return {};
    }
    switch (column) {
    case DetailsColumn::Size:
        return "1023.99 KB";
    case DetailsColumn::Date:
        return locale::FormatDate(Prefs.EffectiveDateFormat.View(), SampleDate);
    case DetailsColumn::Type:
        return "BINARY System";
    case DetailsColumn::Protection:
        return "hsparwed";
    default:
        return {};
    }
}

// The width that the user has given the column, 0 when it has its usual one.
std::int32_t OwnWidth(DetailsColumn column, const ColumnDefault& usual) {
    std::int32_t width = 0;
    if (WhichCIList != nullptr) {
        const ColumnInfoNode* node = NodeOf(column);
        width = node != nullptr ? node->Width : 0;
    } else if (usual.Stored != nullptr) {
        width = Prefs.*usual.Stored;
    }
    return width != usual.Width ? width : 0;
}

// The width that the user has set, else the default one, wide enough for what stands there in his font and
// language.
int WidthOf(DetailsColumn column, const ColumnDefault& usual) {
    if (const std::int32_t own = OwnWidth(column, usual); own > 0) {
        return own;
    }
    const std::string_view titleText = SAK_LocaleString(usual.Title);
    const int title = titleText.empty() ? 0 : SAK_StrLenPixels(titleText) + ArrowWidth;
    return std::max(usual.Width, std::max(SAK_StrLenPixels(SampleText(column)), title) + CellMargins);
}

intuition::Column MakeColumn(DetailsColumn column) {
    const ColumnDefault& usual = *DefaultOf(column);
    const bool isTitled = usual.Title != 0;
    return {.Title = std::string(SAK_LocaleString(usual.Title)),
            .Width = WidthOf(column, usual),
            .Sortable = isTitled,
            .Draggable = WhichCIList != nullptr && isTitled,
            .Alignment = usual.Alignment,
            .Stretch = usual.Width == 0};
}

// The columns of a set that is as it is.
std::vector<intuition::Column> CreateColumnInfoStatic() {
    std::vector<intuition::Column> columns;
    for (std::size_t number = 0; number < InfoOf(WhichCI).Columns.size(); ++number) {
        columns.push_back(MakeColumn(static_cast<DetailsColumn>(number)));
    }
    return columns;
}

// The columns that the user sees, in his order.
std::vector<intuition::Column> CreateColumnInfoDetails() {
    std::vector<intuition::Column> columns;
    for (const DetailsColumn column : ColumnsOnScreen) {
        columns.push_back(MakeColumn(column));
    }
    return columns;
}

// Keeps the width of a column that the user has sized; one that stands as it was set goes on following its
// font. One unit more tells his wish for the usual width from a column that he never touched.
void TakeWidth(std::size_t at, int width) {
    const DetailsColumn column = ColumnsOnScreen[at];
    const bool isAsSet = at < WidthsOnScreen.size() && WidthsOnScreen[at] == width;
    const ColumnDefault* usual = DefaultOf(column);
    if (isAsSet || column == DetailsColumn::Icon || usual == nullptr) {
        return;
    }
    const int own = width == usual->Width ? width + 1 : width;
    if (ColumnInfoNode* node = WhichCIList != nullptr ? NodeOf(column) : nullptr) {
        node->Width = own;
    } else if (usual->Stored != nullptr) {
        Prefs.*usual->Stored = own;
    }
}

// Puts the shown columns into the order in which they stand on screen; hidden ones keep their places behind.
void TakeOrder(const std::vector<DetailsColumn>& order) {
    std::vector<ColumnInfoNode*> nodes;
    for (const DetailsColumn column : order) {
        if (ColumnInfoNode* node = NodeOf(column)) {
            nodes.push_back(node);
        }
    }
    for (ColumnInfoNode& node : *WhichCIList) {
        if (std::find(nodes.begin(), nodes.end(), &node) == nodes.end()) {
            nodes.push_back(&node);
        }
    }
    static_cast<void>(SAK_ReorderGenericList(*WhichCIList, nodes));
}

// By location; no field: always ascending.
std::int16_t SortDirectionOf(LocationKind location) {
    switch (location) {
    case LocationKind::Workbench:
        return Prefs.WorkbenchSortDirection;
    case LocationKind::Computer:
        return Prefs.ComputerSortDirection;
    case LocationKind::Assigns:
        return Prefs.AssignsSortDirection;
    case LocationKind::OS4Depot:
    case LocationKind::Aminet:
        return Prefs.FTPSitesSortDirection;
    case LocationKind::SearchResults:
        return Prefs.SearchSortDirection;
    case LocationKind::Archive:
        return Prefs.ArchiveSortDirection;
    case LocationKind::Drawer:
    case LocationKind::None:
        return Prefs.ContentSortDirection;
    default:
        return 0;
    }
}

} // namespace

ColumnSet WhichCI = ColumnSet::DetailsCI;
GenericList<ColumnInfoNode>* WhichCIList = nullptr;
std::size_t NumberOfColumns = 0;
std::size_t DetailsNameColumnNum = 0;

void RestoreDefaultColumnInfos() {
    for (const ColumnSet set : ListedSets) {
        static_cast<void>(RestoreColumns(set));
    }
}

bool CreateColumnInfoAll() {
    if (!ShowDetailsColumnsList || !std::ranges::all_of(ListedSets, RestoreWhenEmpty)) {
        return false;
    }
    NoteNeededFacts();
    return true;
}

void FreeColumnInfoAll() {
    ColumnsOnScreen.clear();
    WidthsOnScreen.clear();
    WhichCIList = nullptr;
    NumberOfColumns = 0;
}

bool CreateColumnInfoPreview() {
    return true;
}

void FreeColumnInfoPreview() {}

bool IsDetailsStyle(std::int32_t style) {
    return style == ViewDetails || style == ViewThumbnailDetails;
}

std::vector<DetailsColumn> ShownColumns(ColumnSet set) {
    const ColumnSetInfo& info = InfoOf(set);
    std::vector<DetailsColumn> columns = {DetailsColumn::Icon};
    if (info.List == nullptr || !*info.List) {
        for (std::size_t number = 1; number < info.Columns.size(); ++number) {
            columns.push_back(static_cast<DetailsColumn>(number));
        }
        return columns;
    }
    for (const ColumnInfoNode& node : **info.List) {
        if (node.Shown != 0 && node.ColumnNumber > 0 && node.ColumnNumber < info.Columns.size()) {
            columns.push_back(static_cast<DetailsColumn>(node.ColumnNumber));
        }
    }
    return columns;
}

void SetColumnInfo() {
    const std::int32_t style = ViewStyleInForce();
    WhichCI = ColumnSetOf(LBLocation, style);
    WhichCIList = InfoOf(WhichCI).List != nullptr ? InfoOf(WhichCI).List->get() : nullptr;
    IconWidthOnScreen = IconWidthOf(style);
    ColumnsOnScreen = ShownColumns(WhichCI);
    NumberOfColumns = ColumnsOnScreen.size();
    const auto name = std::ranges::find(ColumnsOnScreen, DetailsColumn{NameColumn});
    DetailsNameColumnNum = static_cast<std::size_t>(name - ColumnsOnScreen.begin());
    WidthsOnScreen.clear();
    if (Objects.ContentList == nullptr) {
        return;
    }
    auto columns = WhichCIList != nullptr ? CreateColumnInfoDetails() : CreateColumnInfoStatic();
    columns.front().Width = IconWidthOnScreen;
    Objects.ContentList->SetColumns(std::move(columns));
    FittedOnScreen = false;
    WidthsOnScreen = Objects.ContentList->ColumnWidths();
}

void FitColumnInfo() {
    if (Objects.ContentList == nullptr || Prefs.AutoFitColumns == 0) {
        return;
    }
    Objects.ContentList->FitColumns();
    FittedOnScreen = true;
    WidthsOnScreen = Objects.ContentList->ColumnWidths();
}

bool ColumnsAreInForce() {
    const std::int32_t style = ViewStyleInForce();
    const bool mayStayFitted = !FittedOnScreen || Prefs.AutoFitColumns != 0;
    return mayStayFitted && ColumnSetOf(LBLocation, style) == WhichCI &&
           ColumnsOnScreen == ShownColumns(WhichCI) && IconWidthOnScreen == IconWidthOf(style);
}

const std::vector<DetailsColumn>& ColumnsInForce() {
    return ColumnsOnScreen;
}

void GetColumnInfoWidths() {
    if (Objects.ContentList == nullptr) {
        return;
    }
    const std::vector<int> widths = Objects.ContentList->ColumnWidths();
    std::vector<DetailsColumn> order;
    for (const std::size_t at : Objects.ContentList->ColumnOrder()) {
        if (at >= ColumnsOnScreen.size() || at >= widths.size()) {
            continue;
        }
        order.push_back(ColumnsOnScreen[at]);
        if (Prefs.AutoFitColumns == 0) {
            TakeWidth(at, widths[at]);
        }
    }
    WidthsOnScreen = widths;
    if (WhichCIList != nullptr) {
        TakeOrder(order);
    }
}

void SetSortColumnArrow(std::int32_t column) {
    if (Objects.ContentList == nullptr) {
        return;
    }
    const auto at =
        std::find(ColumnsOnScreen.begin(), ColumnsOnScreen.end(), static_cast<DetailsColumn>(column));
    const bool there = column != 0 && at != ColumnsOnScreen.end();
    Objects.ContentList->SetSortColumn(there ? static_cast<std::size_t>(at - ColumnsOnScreen.begin())
                                             : intuition::NoRow,
                                       SortDirectionOf(LBLocation) == 0);
}

} // namespace solvane
