#include "content/BuildLists.h"

#include "content/ColumnInfo.h"
#include "content/ContentRows.h"
#include "content/RowLabels.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/ViewStyles.h"
#include "interface/Choosers.h"
#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/NavigationPane.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/WorkingSet.h"
#include "prefs/LoadSavePrefs.h"
#include "sak/FilenameSupport.h"

#include <memory>
#include <vector>

namespace solvane {

namespace {

constexpr std::size_t StylesOfDrawers = 7, StylesElsewhere = 4;

// A place keeps its row whatever it is called.
bool IsListOfPlaces(LocationKind location) {
    return location < LocationKind::Drawer && location != LocationKind::Workbench;
}

// The filmstrip may leave out what it has no picture of.
bool IsInStrip(const ContentNode& node) {
    return ViewStyleInForce() != ViewFilmstrip || Prefs.FilmstripOnlyDrawersAndImages == 0 ||
           IsDrawerKind(node.ObjectKind) || node.DatatypeGroupValue == GroupPicture;
}

// Places in the strip count all records, those without a row too.
void CollectRows(std::int32_t style) {
    lblist2.reserve(SAK_GenericListCount(*ContentList) + 1);
    std::uint32_t filmstripOffset = 0;
    for (ContentNode* node : SAK_GenericListNodes(*ContentList)) {
        if (HasRow(*node) && IsInStrip(*node)) {
            lblist2.push_back({node, static_cast<std::uint32_t>(node->ObjectKind)});
            if (style == ViewFilmstrip) {
                FilmstripList.push_back({node, filmstripOffset});
            }
        } else {
            node->Selected = 0;
        }
        ++filmstripOffset;
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

int RowLines(std::int32_t style) {
    const bool hasVolumes = LBLocation == LocationKind::Computer || LBLocation == LocationKind::Workbench;
    if ((hasVolumes && style == ViewContent) ||
        (LBLocation == LocationKind::Computer && style == ViewTiles)) {
        return 3; // the kind and two figures, or two texts and a bar
    }
    if (style == ViewTiles) {
        return LinesOf(RowLabel::Tiles);
    }
    return style == ViewContent ? LinesOf(RowLabel::Content) : 1;
}

void ShowRows() {
    if (!ColumnsAreInForce()) {
        SetColumnInfo();
    }
    SetViewStyle(KeepRows::Yes);
    if (Objects.ContentList == nullptr) {
        return;
    }
    const std::int32_t style = ViewStyleInForce();
    // A tab has kept its own, which knows its pictures; the user may have changed the columns since.
    const auto* kept = static_cast<const ContentRows*>(ActiveSet.RowSource.get());
    if (kept == nullptr || !kept->IsFor(ColumnsInForce(), style)) {
        ActiveSet.RowSource = std::make_unique<ContentRows>(ColumnsInForce(), style, Objects.ContentList);
    }
    Objects.ContentList->SetImageHeight(PictureHeight(style));
    Objects.ContentList->SetRowLines(RowLines(style));
    Objects.ContentList->SetVerticalSeparators(style == ViewList || IsDetailsStyle(style));
    Objects.ContentList->Attach(ActiveSet.RowSource.get());
    FitColumnInfo();
    Objects.ContentList->SetTop(LBTop);
    const auto sort = SortOnShow();
    SetSortColumnArrow(sort ? sort->Column : 0); // none for what stands in the user's own order
}

// The filmstrip has a list of its own beside the rows, and the icon view no rows.
bool HasUsualRows(std::int32_t style) {
    return style != ViewIcons && style != ViewFilmstrip;
}

// Shows the rows that there are in the style now in force, selection kept. In a large drawer, to look at all
// records again would take longer than anything else here.
void ShowSameRows() {
    const std::vector<std::size_t> selected = Objects.ContentList->SelectedRows();
    Objects.ContentList->Detach();
    ActiveSet.RowSource.reset();
    ShowRows();
    for (const std::size_t row : selected) {
        Objects.ContentList->Select(row, true);
    }
    NumSelected = static_cast<std::int32_t>(selected.size());
}

} // namespace

bool HasRow(const ContentNode& node) {
    const std::string_view name = node.EntryName;
    if (node.PlaceFacts || IsListOfPlaces(LBLocation)) {
        return true;
    }
    if (Prefs.ShowHiddenEntries == 0 && name.starts_with('.')) {
        return false;
    }
    return AtFTPMount != 0 || Prefs.ProcessInfoFiles == 0 || !SAK_IsInfoFile(name);
}

std::string_view FilmstripImageOf(const ContentNode& node) {
    if (IsDrawerKind(node.ObjectKind)) {
        return "PROGDIR:Images/Img_Drawer.png";
    }
    return node.DatatypeGroupValue == GroupPicture ? node.EntryPath.View() : "PROGDIR:Images/Img_Project.png";
}

void BuildContentList() {
    FreeContentRows();
    NumSelected = 0;
    TotalNodes = 0;
    ActuallyZero = 0;
    SetNavigationSelected(LBLocation);
    if (!ContentList) {
        return;
    }
    CheckLocations();
    const std::int32_t style = ViewStyleInForce();
    if (style != ViewIcons) {
        CollectRows(style);
    }
    if (style != ViewIcons && style != ViewFilmstrip) {
        AddEmptyRow();
    }
    ShowRows();
}

void BuildContentList_Tabs() {
    SetNavigationSelected(LBLocation);
    CheckLocations();
    ShowRows();
}

void PopViewStyleChooser() {
    PopUpViewStyles(LBLocation == LocationKind::Drawer ? StylesOfDrawers : StylesElsewhere,
                    ViewStyleInForce());
}

void SetViewStyle(KeepRows keep) {
    UpdateGadgets_ViewStyle(ViewStyleInForce());
    UpdateMenus_ViewStyle(ViewStyleInForce());
    if (keep == KeepRows::No) {
        FreeContentRows();
        BuildContentList();
    }
}

void ChangeViewStyle(std::int32_t style) {
    std::int32_t& stored = StylePreferenceOf(LBLocation);
    const std::size_t offered = LBLocation == LocationKind::Drawer ? StylesOfDrawers : StylesElsewhere;
    const bool isOffered = style >= 0 && static_cast<std::size_t>(style) < offered;
    if (!isOffered || style == stored) {
        SetViewStyle(KeepRows::Yes);
        return;
    }
    const std::int32_t before = ViewStyleInForce();
    CollectPrefs();
    stored = style;
    SavePrefs(0);
    BlockMainWindow(1);
    NoteTopRow();
    CheckLocations();
    if (ActiveSet.RowSource && !lblist2.empty() && ActuallyZero == 0 && HasUsualRows(before) &&
        HasUsualRows(ViewStyleInForce())) {
        ShowSameRows();
    } else {
        SelectContentListItems();
        SetViewStyle(KeepRows::No);
        HighlightContentListItems();
    }
    BlockMainWindow(0);
}

void FreeContentRows() {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Detach();
    }
    ActiveSet.RowSource.reset();
    lblist2.clear();
    FilmstripList.clear();
}

void TakeRowsOffWindow() {
    if (Objects.ContentList != nullptr) {
        Objects.ContentList->Detach();
    }
    if (auto* rows = static_cast<ContentRows*>(ActiveSet.RowSource.get())) {
        rows->DropPictures();
    }
}

void NoteTopRow() {
    if (Objects.ContentList != nullptr) {
        LBTop = static_cast<std::uint32_t>(Objects.ContentList->Top());
    }
}

} // namespace solvane
