#include "prefs/PrefsLists.h"

#include "model/Content.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace solvane {

namespace {

using application::PrefsArray;
using application::PrefsValue;

constexpr std::uint32_t IconColumn = 0;
constexpr std::uint32_t FirstTextColumn = 1; // it and the icon column are always shown
constexpr std::int32_t IconColumnWidth = 26; // pixels, as those below
constexpr std::int32_t LastPort = 65535;
constexpr std::int64_t NarrowestColumn = 8, WidestColumn = 4096;

// --- Fields by position ---

// One position of an element, tied to a field of its record. A value that is missing, of another kind or out
// of range leaves the field as it is.
template <class Node>
struct Position {
    bool (*Load)(const PrefsValue& value, Node& into); // false: the whole element is of no use
    PrefsValue (*Save)(const Node& from);
};

template <class Type>
struct IsText : std::false_type {};
template <std::size_t N>
struct IsText<Text<N>> : std::true_type {};

constexpr std::size_t PathLimit = Text<1024>::Limit;

template <class Node, auto Field>
bool LoadValue(const PrefsValue& value, Node& into) {
    using Type = std::remove_cvref_t<decltype(into.*Field)>;
    if constexpr (IsText<Type>::value) {
        const std::string* text = value.String();
        if (text == nullptr) {
            return true;
        }
        if (Type::Limit == PathLimit && text->size() > Type::Limit) {
            return false; // a cut path would lead elsewhere, a cut command do something else
        }
        into.*Field = *text;
    } else if constexpr (std::is_enum_v<Type>) {
        const auto number = value.Number();
        using Number = std::underlying_type_t<Type>;
        into.*Field = number && std::in_range<Number>(*number) ? static_cast<Type>(*number) : into.*Field;
    } else {
        const auto number = value.Number();
        into.*Field = number && std::in_range<Type>(*number) ? static_cast<Type>(*number) : into.*Field;
    }
    return true;
}

template <class Node, auto Field>
bool LoadFlag(const PrefsValue& value, Node& into) {
    into.*Field = value.Number().value_or(into.*Field) != 0 ? 1 : 0;
    return true;
}

template <class Node, auto Field>
PrefsValue SaveValue(const Node& from) {
    using Type = std::remove_cvref_t<decltype(from.*Field)>;
    if constexpr (IsText<Type>::value) {
        return {std::string((from.*Field).View())};
    } else {
        return {static_cast<std::int64_t>(from.*Field)};
    }
}

template <class Node, auto Field>
constexpr Position<Node> At = {LoadValue<Node, Field>, SaveValue<Node, Field>};

template <class Node, auto Field>
constexpr Position<Node> FlagAt = {LoadFlag<Node, Field>, SaveValue<Node, Field>};

// --- Elements ---

enum class Outcome { Added, Passed, NoRecord };

// What is made of the positions once they are read; false: the element is of no use.
template <class Node>
using Finish = bool (*)(Node& node);

template <class Node>
bool NothingMore(Node& /*node*/) {
    return true;
}

template <class Node>
Outcome LoadElement(GenericList<Node>& list, const PrefsArray& values,
                    std::span<const Position<Node>> positions, Finish<Node> finish) {
    auto node = SAK_CreateGenericListNode<Node>();
    if (!node) {
        return Outcome::NoRecord;
    }
    for (std::size_t at = 0; at < std::min(values.size(), positions.size()); ++at) {
        if (!positions[at].Load(values[at], *node)) {
            return Outcome::Passed;
        }
    }
    if (!finish(*node)) {
        return Outcome::Passed;
    }
    SAK_AddGenericListNode(list, std::move(node));
    return Outcome::Added;
}

using PassedOver = std::optional<std::size_t>; // elements; nothing: a record could not be made

template <class Node>
PassedOver LoadElements(GenericList<Node>& list, const PrefsArray* from,
                        std::span<const Position<Node>> positions, Finish<Node> finish) {
    SAK_ClearGenericList(list);
    std::size_t passed = 0;
    if (from == nullptr) {
        return passed;
    }
    for (const PrefsValue& element : *from) {
        const PrefsArray* values = element.Array();
        const Outcome outcome = values != nullptr && !values->empty()
                                    ? LoadElement<Node>(list, *values, positions, finish)
                                    : Outcome::Passed;
        if (outcome == Outcome::NoRecord) {
            return std::nullopt;
        }
        passed += outcome == Outcome::Passed ? 1 : 0;
    }
    return passed;
}

template <class Node>
PrefsArray SaveElements(const GenericList<Node>& list, std::span<const Position<Node>> positions) {
    PrefsArray array;
    for (const Node& node : list) {
        PrefsArray values;
        for (const Position<Node>& position : positions) {
            values.push_back(position.Save(node));
        }
        array.push_back({std::move(values)});
    }
    return array;
}

// --- The records, position by position ---

constexpr std::array LocationsPositions = {At<LocationsNode, &LocationsNode::Path>,
                                           At<LocationsNode, &LocationsNode::ViewStyle>};

constexpr std::array TabsPositions = {At<TabsNode, &TabsNode::Location>, At<TabsNode, &TabsNode::Path>};

constexpr std::array BookmarksPositions = {At<BookmarksNode, &BookmarksNode::Location>,
                                           At<BookmarksNode, &BookmarksNode::Name>,
                                           At<BookmarksNode, &BookmarksNode::Path>};

constexpr std::array FavoritesPositions = {At<FavoritesNode, &FavoritesNode::Location>,
                                           At<FavoritesNode, &FavoritesNode::Name>,
                                           At<FavoritesNode, &FavoritesNode::Path>};

constexpr std::array UserButtonsPositions = {
    At<UserButtonsNode, &UserButtonsNode::ButtonID>,
    At<UserButtonsNode, &UserButtonsNode::Name>,
    At<UserButtonsNode, &UserButtonsNode::Command>,
    At<UserButtonsNode, &UserButtonsNode::HintText>,
    At<UserButtonsNode, &UserButtonsNode::ImagePath>,
    FlagAt<UserButtonsNode, &UserButtonsNode::ProcessAll>,
    FlagAt<UserButtonsNode, &UserButtonsNode::RunAsync>,
    FlagAt<UserButtonsNode, &UserButtonsNode::CurrentPathHome>,
    FlagAt<UserButtonsNode, &UserButtonsNode::QuoteEntries>,
    FlagAt<UserButtonsNode, &UserButtonsNode::ShowOutput>,
    FlagAt<UserButtonsNode, &UserButtonsNode::ReloadDrawer>,
};

constexpr std::array ColumnPositions = {At<ColumnInfoNode, &ColumnInfoNode::ColumnNumber>,
                                        FlagAt<ColumnInfoNode, &ColumnInfoNode::Shown>,
                                        At<ColumnInfoNode, &ColumnInfoNode::Width>};

constexpr std::array FTPSitesPositions = {
    At<FTPSitesNode, &FTPSitesNode::Name>,     At<FTPSitesNode, &FTPSitesNode::Address>,
    At<FTPSitesNode, &FTPSitesNode::Username>, At<FTPSitesNode, &FTPSitesNode::Port>,
    At<FTPSitesNode, &FTPSitesNode::Timeout>,  FlagAt<FTPSitesNode, &FTPSitesNode::Anonymous>,
    At<FTPSitesNode, &FTPSitesNode::Password>, At<FTPSitesNode, &FTPSitesNode::RemoteDrawer>,
};

// --- What follows from the positions ---

// No path would be part of every path.
bool FinishLocation(LocationsNode& node) {
    if (node.ViewStyle < ViewList || node.ViewStyle > ViewIcons) {
        node.ViewStyle = ViewDetails;
    }
    return !node.Path.Empty();
}

bool FinishBookmark(BookmarksNode& node) {
    node.Key = FormatText("[Bkm]%s", node.Name.View());
    return true;
}

bool FinishFavorite(FavoritesNode& node) {
    if (node.Location == LocationKind::Workbench && node.Name == "Workbench") {
        node.Path = "Workbench";
        node.Key = "Workbench";
    } else {
        node.Key = FormatText("[Fav]%s", node.Path.View());
    }
    return true;
}

bool FinishSite(FTPSitesNode& node) {
    const FTPSitesNode usual;
    if (node.Port < 1 || node.Port > LastPort) {
        node.Port = usual.Port;
    }
    if (node.Timeout < 0) {
        node.Timeout = usual.Timeout;
    }
    node.Key = FormatText("[FTP]%s", node.Name.View());
    return true;
}

bool HasColumn(const GenericList<ColumnInfoNode>& columns, std::uint32_t number) {
    return std::any_of(columns.begin(), columns.end(),
                       [number](const ColumnInfoNode& node) { return node.ColumnNumber == number; });
}

// The icon column and the first text are always there; a width that would hide a column or fill the screen
// comes from no window of ours. 0 stands for the usual width.
void RepairColumn(ColumnInfoNode& node) {
    if (node.ColumnNumber <= FirstTextColumn) {
        node.Shown = 1;
    }
    if (node.ColumnNumber == IconColumn) {
        node.Width = IconColumnWidth;
    } else if (node.Width != 0) {
        node.Width =
            static_cast<std::int32_t>(std::clamp<std::int64_t>(node.Width, NarrowestColumn, WidestColumn));
    }
}

bool AddColumn(GenericList<ColumnInfoNode>& columns, std::uint32_t number, std::int32_t width) {
    auto node = SAK_CreateGenericListNode<ColumnInfoNode>();
    if (!node) {
        return false;
    }
    node->ColumnNumber = number;
    node->Shown = 1;
    node->Width = width;
    SAK_AddGenericListNode(columns, std::move(node));
    return true;
}

// --- The lists ---

// A list whose elements are arrays of positions.
template <auto& List, const auto& Positions, auto FinishNode>
struct OfArrays {
    using Node = std::remove_cvref_t<decltype(*List->begin())>;
    static PassedOver Load(const PrefsArray* from) {
        return LoadElements<Node>(*List, from, Positions, FinishNode);
    }
    static PrefsArray Save() { return SaveElements<Node>(*List, Positions); }
};

// Columns 0 to Count - 1; each stands once.
template <auto& List, std::uint32_t Count>
struct OfColumns {
    static bool Finish(ColumnInfoNode& node) {
        if (node.ColumnNumber >= Count || HasColumn(*List, node.ColumnNumber)) {
            return false;
        }
        RepairColumn(node);
        return true;
    }
    static PassedOver Load(const PrefsArray* from) {
        return LoadElements<ColumnInfoNode>(*List, from, ColumnPositions, Finish);
    }
    static PrefsArray Save() { return SaveElements<ColumnInfoNode>(*List, ColumnPositions); }
};

constexpr std::uint32_t ComputerColumns = 6, ArchiveColumns = 8, DetailsColumns = 25;
using OfComputerColumns = OfColumns<ShowComputerColumnsList, ComputerColumns>;
using OfArchiveColumns = OfColumns<ShowArchiveColumnsList, ArchiveColumns>;
using OfDetailsColumns = OfColumns<ShowDetailsColumnsList, DetailsColumns>;

// Documents of earlier versions lack the last column. A list without any gets all of them before it is shown.
PassedOver LoadComputerColumns(const PrefsArray* from) {
    constexpr std::uint32_t last = ComputerColumns - 1;
    constexpr std::int32_t width = 150;
    const PassedOver passed = OfComputerColumns::Load(from);
    const bool isWhole = from == nullptr || from->empty() || HasColumn(*ShowComputerColumnsList, last);
    return passed && (isWhole || AddColumn(*ShowComputerColumnsList, last, width)) ? passed : std::nullopt;
}

PassedOver LoadDetailsColumns(const PrefsArray* from) {
    constexpr std::uint32_t last = DetailsColumns - 1;
    constexpr std::int32_t width = 100;
    const PassedOver passed = OfDetailsColumns::Load(from);
    const bool isWhole = from == nullptr || from->size() != last || HasColumn(*ShowDetailsColumnsList, last);
    return passed && (isWhole || AddColumn(*ShowDetailsColumnsList, last, width)) ? passed : std::nullopt;
}

bool AddButton(std::uint16_t id) {
    auto node = SAK_CreateGenericListNode<ToolbarNode>();
    if (!node) {
        return false;
    }
    node->ButtonID = id;
    SAK_AddGenericListNode(*ToolbarList, std::move(node));
    return true;
}

PassedOver LoadToolbar(const PrefsArray* from) {
    SAK_ClearGenericList(*ToolbarList);
    std::size_t passed = 0;
    if (from == nullptr) {
        return passed;
    }
    for (const PrefsValue& element : *from) {
        const auto id = element.Number();
        if (!id || !std::in_range<std::uint16_t>(*id)) {
            ++passed;
        } else if (!AddButton(static_cast<std::uint16_t>(*id))) {
            return std::nullopt;
        }
    }
    return passed;
}

PrefsArray SaveToolbar() {
    PrefsArray array;
    for (const ToolbarNode& node : *ToolbarList) {
        array.emplace_back().Data = std::int64_t{node.ButtonID};
    }
    return array;
}

template <class Of>
constexpr PrefsList Row(std::string_view key) {
    return {key, Of::Load, Of::Save};
}

constexpr std::array Table = {
    Row<OfArrays<LocationsList, LocationsPositions, FinishLocation>>("Locations"),
    Row<OfArrays<StartupTabsList, TabsPositions, NothingMore<TabsNode>>>("StartupTabs"),
    Row<OfArrays<MasterBookmarksList, BookmarksPositions, FinishBookmark>>("Bookmarks"),
    Row<OfArrays<MasterFavoritesList, FavoritesPositions, FinishFavorite>>("Favorites"),
    PrefsList{"ToolbarList", LoadToolbar, SaveToolbar},
    Row<OfArrays<UserButtonsList, UserButtonsPositions, NothingMore<UserButtonsNode>>>("UserButtons"),
    PrefsList{"ShowComputerColumns", LoadComputerColumns, OfComputerColumns::Save},
    Row<OfArchiveColumns>("ShowArchiveColumns"),
    PrefsList{"ShowDetailsColumns", LoadDetailsColumns, OfDetailsColumns::Save},
    Row<OfArrays<FTPSitesList, FTPSitesPositions, FinishSite>>("FTPSites"),
};

bool AddFavorite(LocationKind location, std::string_view name, std::string_view path) {
    auto node = SAK_CreateGenericListNode<FavoritesNode>();
    if (!node) {
        return false;
    }
    node->Location = location;
    node->Name = name;
    node->Path = path;
    FinishFavorite(*node);
    SAK_AddGenericListNode(*MasterFavoritesList, std::move(node));
    return true;
}

} // namespace

std::span<const PrefsList> PrefsLists() {
    return Table;
}

bool CreatePrefsLists() {
    LocationsList = SAK_CreateGenericList<LocationsNode>();
    StartupTabsList = SAK_CreateGenericList<TabsNode>();
    MasterBookmarksList = SAK_CreateGenericList<BookmarksNode>();
    MasterFavoritesList = SAK_CreateGenericList<FavoritesNode>();
    ToolbarList = SAK_CreateGenericList<ToolbarNode>();
    UserButtonsList = SAK_CreateGenericList<UserButtonsNode>();
    ShowComputerColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
    ShowArchiveColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
    ShowDetailsColumnsList = SAK_CreateGenericList<ColumnInfoNode>();
    FTPSitesList = SAK_CreateGenericList<FTPSitesNode>();
    return LocationsList && StartupTabsList && MasterBookmarksList && MasterFavoritesList && ToolbarList &&
           UserButtonsList && ShowComputerColumnsList && ShowArchiveColumnsList && ShowDetailsColumnsList &&
           FTPSitesList;
}

void FreePrefsLists() {
    LocationsList.reset();
    StartupTabsList.reset();
    MasterBookmarksList.reset();
    MasterFavoritesList.reset();
    ToolbarList.reset();
    UserButtonsList.reset();
    ShowComputerColumnsList.reset();
    ShowArchiveColumnsList.reset();
    ShowDetailsColumnsList.reset();
    FTPSitesList.reset();
}

bool RestoreDefaultToolbar() {
    constexpr std::uint16_t gap = 0;
    constexpr std::array<std::uint16_t, 33> buttons = {
        1,  2,   3,  4,   5,  gap, 6,  7,  8,  gap, 9,  gap, 10, 11,  12, 13, gap,
        14, gap, 15, gap, 16, 17,  18, 19, 20, gap, 21, gap, 22, gap, 23, 24,
    };
    SAK_ClearGenericList(*ToolbarList);
    return std::all_of(buttons.begin(), buttons.end(), AddButton);
}

bool RestoreDefaultFavorites() {
    SAK_ClearGenericList(*MasterFavoritesList);
    return AddFavorite(LocationKind::Workbench, "Workbench", "Workbench") &&
           AddFavorite(LocationKind::Drawer, SAK_LocaleString(MSG_UTILITIES), "SYS:Utilities") &&
           AddFavorite(LocationKind::Drawer, SAK_LocaleString(MSG_SYSTEM_DRAWER), "SYS:System");
}

} // namespace solvane
