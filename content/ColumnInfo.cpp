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

struct ColumnDefault {
    MessageNumber Title;
    std::int32_t Width; // pixels
    bool Shown;
};

// By column number less 1; the icon column is always there.
constexpr std::array<ColumnDefault, DetailsColumnCount - 1> Defaults = {{
    {MSG_NAME, 250, true},        {MSG_SIZE, 80, true},           {MSG_DATE, 150, true},
    {MSG_TYPE, 100, true},        {MSG_PROTECTION, 100, true},    {MSG_FILENOTE, 250, true},
    {MSG_DIMENSIONS, 100, false}, {MSG_TITLE, 130, false},        {MSG_TIME, 50, false},
    {MSG_ARTIST, 120, false},     {MSG_ALBUM_ARTIST, 120, false}, {MSG_ALBUM, 120, false},
    {MSG_TRACK, 50, false},       {MSG_DISC, 50, false},          {MSG_YEAR, 50, false},
    {MSG_GENRE, 120, false},      {MSG_COMMENT, 120, false},      {MSG_COMPOSER, 120, false},
    {MSG_BIT_RATE, 60, false},    {MSG_SAMPLE_RATE, 60, false},   {MSG_ENCODER, 120, false},
    {MSG_MODE, 100, false},       {MSG_CODEC, 100, false},        {MSG_VERSION, 43, false},
}};

// Icon, name, and what a device or an entry of an archive has; pixels.
constexpr std::array<std::int32_t, 6> ComputerWidths = {IconColumnWidth, 250, 80, 80, 120, 150};
constexpr std::array<std::int32_t, 8> ArchiveWidths = {IconColumnWidth, 250, 100, 100, 50, 120, 65, 100};

constexpr int LeastColumn = 20, WidestColumn = 4000; // layout units
constexpr int PictureMargins = 10;                   // layout units on both sides of a large picture
constexpr int CellMargins = 14;                      // layout units on both sides of a cell's text
constexpr int ArrowWidth = 16;                       // layout units beside a title for the arrow of the sort
constexpr std::uint32_t SampleDate = 1538337599;     // 30 September 2026, 19:59:59

std::vector<DetailsColumn> ColumnsOnScreen; // what the list browser has now; empty: none were set
std::vector<int> WidthsOnScreen;            // theirs, as last set or taken over
std::int32_t StyleOnScreen = ViewDetails;   // the style that they were set for
int IconWidthOnScreen = 0;

int IconWidthOf(std::int32_t style) {
    switch (style) {
    case ViewTiles:
        return TilesIconSide() + PictureMargins;
    case ViewContent:
        return std::clamp(Prefs.Content_0Width, IconColumnWidth, WidestColumn);
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

bool AddDefaultColumns() {
    bool done = AddColumn(*ShowDetailsColumnsList, 0, IconColumnWidth, true);
    for (std::uint32_t number = 1; done && number <= Defaults.size(); ++number) {
        const ColumnDefault& column = Defaults[number - 1];
        done = AddColumn(*ShowDetailsColumnsList, number, column.Width, column.Shown);
    }
    return done;
}

// Fills a list whose columns are all shown; nothing where there is no such list.
void RestoreColumns(const std::unique_ptr<GenericList<ColumnInfoNode>>& columns,
                    std::span<const std::int32_t> widths) {
    if (!columns) {
        return;
    }
    SAK_ClearGenericList(*columns);
    for (const std::int32_t width : widths) {
        if (!AddColumn(*columns, SAK_GenericListCount(*columns), width, true)) {
            return;
        }
    }
}

ColumnInfoNode* NodeOf(DetailsColumn column) {
    return FindNode(*ShowDetailsColumnsList, [column](const ColumnInfoNode& node) {
        return node.ColumnNumber == static_cast<std::uint32_t>(column);
    });
}

// The longest text that a column usually shows; empty where there is no usual one.
std::string SampleText(DetailsColumn column) {
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

std::string_view TitleOf(DetailsColumn column) {
    return SAK_LocaleString(Defaults[static_cast<std::size_t>(column) - 1].Title);
}

// The width that the user has set, else the default one, wide enough for what stands there in his font and
// language.
int WidthOf(DetailsColumn column) {
    const std::int32_t usual = Defaults[static_cast<std::size_t>(column) - 1].Width;
    const ColumnInfoNode* node = NodeOf(column);
    if (node != nullptr && node->Width > 0 && (node->WidthIsOwn != 0 || node->Width != usual)) {
        return node->Width;
    }
    const int title = SAK_StrLenPixels(TitleOf(column)) + ArrowWidth;
    return std::max(usual, std::max(SAK_StrLenPixels(SampleText(column)), title) + CellMargins);
}

intuition::Column MakeDetailsColumn(DetailsColumn column) {
    return {.Title = std::string(TitleOf(column)),
            .Width = WidthOf(column),
            .Alignment = column == DetailsColumn::Size ? intuition::Align::Right : intuition::Align::Left};
}

intuition::Column MakeColumn(DetailsColumn column, std::int32_t style) {
    if (column == DetailsColumn::Icon) {
        return {.Title = "", .Width = IconWidthOf(style), .Sortable = false, .Draggable = false};
    }
    if (IsDetailsStyle(style)) {
        return MakeDetailsColumn(column);
    }
    if (style == ViewContent) {
        const bool first = column == DetailsColumn::Name;
        return {.Title = first ? std::string(TitleOf(column)) : std::string(),
                .Width = std::clamp(first ? Prefs.Content_1Width : Prefs.Content_2Width, LeastColumn,
                                    WidestColumn),
                .Sortable = first,
                .Draggable = false};
    }
    return {.Title = std::string(TitleOf(column)), .Draggable = false, .Stretch = true};
}

// Keeps the width of a column that the user has sized; one that stands as it was set goes on following its
// font.
void TakeWidth(std::size_t at, int width) {
    const bool isAsSet = at < WidthsOnScreen.size() && WidthsOnScreen[at] == width;
    ColumnInfoNode* node = NodeOf(ColumnsOnScreen[at]);
    if (node != nullptr && !isAsSet) {
        node->Width = width;
        node->WidthIsOwn = 1;
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
    for (ColumnInfoNode& node : *ShowDetailsColumnsList) {
        if (std::find(nodes.begin(), nodes.end(), &node) == nodes.end()) {
            nodes.push_back(&node);
        }
    }
    static_cast<void>(SAK_ReorderGenericList(*ShowDetailsColumnsList, nodes));
}

// The picture's column has always its width.
void TakeContentWidths(const std::vector<int>& widths) {
    if (widths.size() > 2) {
        Prefs.Content_1Width = widths[1];
        Prefs.Content_2Width = widths[2];
    }
}

void RestoreWhenEmpty(const std::unique_ptr<GenericList<ColumnInfoNode>>& columns,
                      std::span<const std::int32_t> widths) {
    if (columns && SAK_GenericListCount(*columns) == 0) {
        RestoreColumns(columns, widths);
    }
}

} // namespace

void RestoreDefaultColumnInfos() {
    RestoreColumns(ShowComputerColumnsList, ComputerWidths);
    RestoreColumns(ShowArchiveColumnsList, ArchiveWidths);
    if (!ShowDetailsColumnsList) {
        return;
    }
    SAK_ClearGenericList(*ShowDetailsColumnsList);
    static_cast<void>(AddDefaultColumns());
}

bool CreateColumnInfoAll() {
    if (!ShowDetailsColumnsList) {
        return false;
    }
    if (SAK_GenericListCount(*ShowDetailsColumnsList) == 0 && !AddDefaultColumns()) {
        return false;
    }
    RestoreWhenEmpty(ShowComputerColumnsList, ComputerWidths);
    RestoreWhenEmpty(ShowArchiveColumnsList, ArchiveWidths);
    NoteNeededFacts();
    return true;
}

void FreeColumnInfoAll() {
    ColumnsOnScreen.clear();
    WidthsOnScreen.clear();
}

bool CreateColumnInfoPreview() {
    return true;
}

void FreeColumnInfoPreview() {}

bool IsDetailsStyle(std::int32_t style) {
    return style == ViewDetails || style == ViewThumbnailDetails;
}

std::vector<DetailsColumn> ShownColumns(std::int32_t style) {
    std::vector<DetailsColumn> columns = {DetailsColumn::Icon};
    if (!IsDetailsStyle(style) || !ShowDetailsColumnsList) {
        columns.push_back(DetailsColumn::Name);
        if (style == ViewContent) {
            columns.push_back(DetailsColumn::Date);
        }
        return columns;
    }
    for (const ColumnInfoNode& node : *ShowDetailsColumnsList) {
        if (node.Shown != 0 && node.ColumnNumber > 0 && node.ColumnNumber < DetailsColumnCount) {
            columns.push_back(static_cast<DetailsColumn>(node.ColumnNumber));
        }
    }
    return columns;
}

void SetColumnInfo() {
    StyleOnScreen = ViewStyleInForce();
    IconWidthOnScreen = IconWidthOf(StyleOnScreen);
    ColumnsOnScreen = ShownColumns(StyleOnScreen);
    WidthsOnScreen.clear();
    if (Objects.ContentList == nullptr || !ShowDetailsColumnsList) {
        return;
    }
    std::vector<intuition::Column> columns;
    for (const DetailsColumn column : ColumnsOnScreen) {
        columns.push_back(MakeColumn(column, StyleOnScreen));
    }
    Objects.ContentList->SetColumns(std::move(columns));
    WidthsOnScreen = Objects.ContentList->ColumnWidths();
}

bool ColumnsAreInForce() {
    const std::int32_t style = ViewStyleInForce();
    return IsDetailsStyle(style) == IsDetailsStyle(StyleOnScreen) && ColumnsOnScreen == ShownColumns(style) &&
           IconWidthOnScreen == IconWidthOf(style);
}

const std::vector<DetailsColumn>& ColumnsInForce() {
    return ColumnsOnScreen;
}

void GetColumnInfoWidths() {
    if (Objects.ContentList == nullptr || Prefs.AutoFitColumns != 0) {
        return;
    }
    if (StyleOnScreen == ViewContent) {
        TakeContentWidths(Objects.ContentList->ColumnWidths());
    }
    if (!IsDetailsStyle(StyleOnScreen)) {
        return;
    }
    const std::vector<int> widths = Objects.ContentList->ColumnWidths();
    std::vector<DetailsColumn> order;
    for (const std::size_t at : Objects.ContentList->ColumnOrder()) {
        if (at >= ColumnsOnScreen.size() || at >= widths.size()) {
            continue;
        }
        order.push_back(ColumnsOnScreen[at]);
        TakeWidth(at, widths[at]);
    }
    WidthsOnScreen = widths;
    TakeOrder(order);
}

void SetSortColumnArrow(std::int32_t column) {
    if (Objects.ContentList == nullptr) {
        return;
    }
    const auto at =
        std::find(ColumnsOnScreen.begin(), ColumnsOnScreen.end(), static_cast<DetailsColumn>(column));
    const bool there = column != 0 && at != ColumnsOnScreen.end();
    const std::int16_t direction =
        LBLocation == LocationKind::Workbench ? Prefs.WorkbenchSortDirection : Prefs.ContentSortDirection;
    Objects.ContentList->SetSortColumn(
        there ? static_cast<std::size_t>(at - ColumnsOnScreen.begin()) : intuition::NoRow, direction == 0);
}

} // namespace solvane
