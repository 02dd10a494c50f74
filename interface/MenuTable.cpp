#include "interface/MenuTable.h"

#include "interface/Images.h"
#include "model/Prefs.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace solvane {

namespace {

using intuition::MenuItem;
using intuition::MenuMark;

// The keys that items tell: those that are named in the user's language, Control or Alt with a letter, and
// keys that have the same name everywhere.
enum class Key : std::uint8_t { None, Backspace, ControlEnter, AltEnter, Delete, Control, Alt, Plain };

struct ShownKey {
    Key Kind = Key::None;
    std::string_view Name = {};
};

struct StripRow {
    int Depth = 0;        // 0: a title
    MenuId Id = MenuNone; // MenuNone: a line
    MessageNumber Text = {};
    std::string_view Image = {};
    MenuMark Mark = MenuMark::None;
    ShownKey Shown = {};
};

constexpr StripRow Title(MenuId id, MessageNumber text) {
    return {.Depth = 0, .Id = id, .Text = text};
}
constexpr StripRow Item(MenuId id, MessageNumber text, std::string_view image = {}, ShownKey key = {}) {
    return {.Depth = 1, .Id = id, .Text = text, .Image = image, .Shown = key};
}
constexpr StripRow Sub(MenuId id, MessageNumber text, std::string_view image = {}) {
    return {.Depth = 2, .Id = id, .Text = text, .Image = image};
}
constexpr StripRow Choice(MenuId id, MessageNumber text) {
    return {.Depth = 2, .Id = id, .Text = text, .Mark = MenuMark::Choice};
}
constexpr StripRow Switch(int depth, MenuId id, MessageNumber text, ShownKey key = {}) {
    return {.Depth = depth, .Id = id, .Text = text, .Mark = MenuMark::Check, .Shown = key};
}
constexpr StripRow Line{.Depth = 1};
constexpr StripRow SubLine{.Depth = 2};

constexpr ShownKey ControlKey(std::string_view letter) {
    return {Key::Control, letter};
}
constexpr ShownKey PlainKey(std::string_view name) {
    return {Key::Plain, name};
}

// A row with deeper rows behind it is a head; so are those of HeadsOfLists.
constexpr StripRow Strip[] = {
    Title(MenuProject, MSG_MENU_PROJECT),
    Item(MenuCheckVersion, MSG_MENU_CHECK_VERSION, "download"),
    Line,
    Item(MenuLoadPrefs, MSG_MENU_LOAD_PREFS),
    Item(MenuSavePrefs, MSG_MENU_SAVE_PREFS),
    Line,
    Item(MenuIconify, MSG_MENU_ICONIFY),
    Item(MenuAbout, MSG_MENU_ABOUT, "info"),
    Line,
    Item(MenuQuit, MSG_MENU_QUIT, "quit"),
    Item(MenuQuitAll, MSG_MENU_QUIT_ALL, {}, {Key::Alt, "Q"}),

    Title(MenuGo, MSG_MENU_GO),
    Item(MenuBack, MSG_MENU_BACK, "back", PlainKey("\u2190")),
    Item(MenuForward, MSG_MENU_FORWARD, "forward", PlainKey("\u2192")),
    Item(MenuParent, MSG_MENU_PARENT, "parent", {Key::Backspace}),
    Item(MenuReload, MSG_MENU_RELOAD, "reload", PlainKey("F5")),
    Line,
    Item(MenuGoBookmarks, MSG_BOOKMARKS, "list_bookmark"),
    Item(MenuGoFavorites, MSG_FAVORITES, "list_favorite"),
    Item(MenuGoWorkbench, MSG_WORKBENCH, "list_desktop"),
    Line,
    Item(MenuGoComputerHead, MSG_COMPUTER, "list_computer"),
    Sub(MenuGoComputer, MSG_COMPUTER, "list_computer"),
    Item(MenuGoAssigns, MSG_ASSIGNS, "list_assign"),
    Item(MenuGoFTPSites, MSG_FTP_SITES, "list_ftpsite"),

    Title(MenuSelection, MSG_MENU_SELECTION),
    Item(MenuSelectAll, MSG_MENU_SELECT_ALL, "file_selectall", ControlKey("A")),
    Item(MenuSelectNone, MSG_MENU_SELECT_NONE, "file_unselectall", ControlKey("Z")),
    Item(MenuToggleSelection, MSG_MENU_TOGGLE_SELECTION, "selecttoggle"),
    Item(MenuSelectByType, MSG_MENU_SELECT_BY_TYPE, "select"),
    Item(MenuPattern, MSG_MENU_PATTERN, "filepattern"),
    Line,
    Item(MenuCut, MSG_MENU_CUT, "cut", ControlKey("X")),
    Item(MenuCopy, MSG_MENU_COPY, "copy", ControlKey("C")),
    Item(MenuPaste, MSG_MENU_PASTE, "paste", ControlKey("V")),
    Item(MenuPasteTo, MSG_MENU_PASTE_TO),
    Sub(MenuPasteToComputer, MSG_COMPUTER, "list_computer"),
    Sub(MenuPasteToFavorites, MSG_FAVORITES, "list_favorite"),
    Sub(MenuPasteToBookmarks, MSG_BOOKMARKS, "list_bookmark"),
    Item(MenuTabs, MSG_MENU_TABS),

    Title(MenuActions, MSG_MENU_ACTIONS),
    Item(MenuExecuteCommand, MSG_MENU_EXECUTE_COMMAND, "shell"),
    Line,
    Item(MenuDelete, MSG_MENU_DELETE, "delete", {Key::Delete}),
    Item(MenuNewDrawer, MSG_MENU_NEW_DRAWER, "newdrawer"),
    Item(MenuRename, MSG_MENU_RENAME, "rename"),
    Item(MenuProtect, MSG_MENU_PROTECT, "protect"),
    Item(MenuFilenote, MSG_MENU_FILENOTE, "filecomments"),
    Line,
    Item(MenuArchive, MSG_MENU_ARCHIVE, "archive"),
    Sub(MenuOpenArchive, MSG_MENU_OPEN_ARCHIVE),
    SubLine,
    Sub(MenuExtractToDefault, MSG_MENU_EXTRACT_DEFAULT),
    Sub(MenuExtractHere, MSG_MENU_EXTRACT_HERE),
    Sub(MenuExtractArchive, MSG_MENU_EXTRACT_ARCHIVE),
    SubLine,
    Sub(MenuAddToArchive, MSG_MENU_ADD_TO_ARCHIVE),
    Sub(MenuArchiveItem, MSG_MENU_ARCHIVE_ITEM),
    Sub(MenuArchiveSeparately, MSG_MENU_ARCHIVE_SEPARATELY),
    SubLine,
    Sub(MenuConvertArchive, MSG_MENU_CONVERT_ARCHIVE),
    Sub(MenuTestArchive, MSG_MENU_TEST_ARCHIVE),
    Item(MenuEdit, MSG_MENU_EDIT, "editor"),
    Item(MenuGetDrawerSize, MSG_MENU_GET_DRAWER_SIZE, "filesize"),
    Item(MenuAddIcon, MSG_MENU_ADD_ICON, "addicon"),
    Item(MenuRemoveIcon, MSG_MENU_REMOVE_ICON, "removeicon"),
    Line,
    Item(MenuDownload, MSG_MENU_DOWNLOAD, "download"),
    Item(MenuLeaveOut, MSG_MENU_LEAVE_OUT, "iconleaveout"),
    Item(MenuPutAway, MSG_MENU_PUT_AWAY, "iconputaway"),
    Line,
    Item(MenuGetVersion, MSG_MENU_GET_VERSION, "version"),
    Item(MenuInformation, MSG_MENU_INFORMATION, "info"),

    Title(MenuBookmarks, MSG_BOOKMARKS),
    Item(MenuAddBookmark, MSG_MENU_ADD_LOCATION),
    Item(MenuOrganizeBookmarks, MSG_MENU_ORGANIZE_BOOKMARKS),
    Item(MenuBookmarksInTabs, MSG_MENU_OPEN_ALL_TABS, "newtab"),
    Item(MenuBookmarksInWindows, MSG_MENU_OPEN_ALL_WINDOWS, "newwindow"),

    Title(MenuFavorites, MSG_FAVORITES),
    Item(MenuAddFavorite, MSG_MENU_ADD_LOCATION),
    Item(MenuOrganizeFavorites, MSG_MENU_ORGANIZE_FAVORITES),
    Item(MenuFavoritesInTabs, MSG_MENU_OPEN_ALL_TABS, "newtab"),
    Item(MenuFavoritesInWindows, MSG_MENU_OPEN_ALL_WINDOWS, "newwindow"),

    Title(MenuFTPSites, MSG_FTP_SITES),
    Item(MenuOrganizeFTPSites, MSG_MENU_ORGANIZE_FTP),
    Line,
    Item(MenuOS4Depot, MSG_OS4DEPOT),
    Sub(MenuOS4DepotRecent, MSG_RECENT_INDEX),
    Sub(MenuOS4DepotFull, MSG_FULL_INDEX),
    Item(MenuAminet, MSG_AMINET),
    Sub(MenuAminetRecent, MSG_RECENT_INDEX),
    Sub(MenuAminetFull, MSG_FULL_INDEX),

    Title(MenuView, MSG_MENU_VIEW),
    Item(MenuViewStyle, MSG_MENU_VIEW_STYLE),
    Choice(MenuStyleList, MSG_STYLE_LIST),
    Choice(MenuStyleDetails, MSG_STYLE_DETAILS),
    Choice(MenuStyleTiles, MSG_STYLE_TILES),
    Choice(MenuStyleContent, MSG_STYLE_CONTENT),
    Choice(MenuStyleThumbnail, MSG_STYLE_THUMBNAIL),
    Choice(MenuStyleThumbnailDetails, MSG_STYLE_THUMBNAIL_DETAILS),
    Choice(MenuStyleFilmstrip, MSG_STYLE_FILMSTRIP),
    Item(MenuLayout, MSG_MENU_LAYOUT),
    Switch(2, MenuLayoutBookmarks, MSG_BOOKMARKS),
    Switch(2, MenuLayoutToolbar, MSG_MENU_TOOLBAR),
    Switch(2, MenuLayoutUserButtons, MSG_MENU_USER_BUTTONS),
    SubLine,
    Switch(2, MenuLayoutNavigation, MSG_MENU_NAVIGATION),
    Switch(2, MenuLayoutPreviewHorizontal, MSG_MENU_PREVIEW_HORIZONTAL),
    Switch(2, MenuLayoutPreviewVertical, MSG_MENU_PREVIEW_VERTICAL),
    Switch(2, MenuLayoutDetails, MSG_MENU_DETAILS),
    Switch(2, MenuLayoutThumbnail, MSG_MENU_THUMBNAIL),
    Switch(2, MenuLayoutStatusBar, MSG_MENU_STATUS_BAR),
    Line,
    Item(MenuTogglePreview, MSG_MENU_TOGGLE_PREVIEW, {}, PlainKey("F6")),
    Item(MenuToggleMetadata, MSG_MENU_TOGGLE_METADATA, {}, PlainKey("F7")),
    Line,
    Item(MenuDrawersOrder, MSG_MENU_DRAWERS_ORDER),
    Choice(MenuDrawersFirst, MSG_DRAWERS_FIRST),
    Choice(MenuDrawersMixed, MSG_DRAWERS_MIXED),
    Choice(MenuDrawersLast, MSG_DRAWERS_LAST),
    Line,
    Switch(1, MenuProcessInfo, MSG_MENU_PROCESS_INFO),
    Switch(1, MenuShowActualIcons, MSG_MENU_SHOW_ACTUAL_ICONS),
    Switch(1, MenuShowThumbnail, MSG_MENU_SHOW_THUMBNAIL),
    Switch(1, MenuShowHidden, MSG_MENU_SHOW_HIDDEN, ControlKey("H")),

    Title(MenuTools, MSG_MENU_TOOLS),
    Item(MenuAdvancedSearch, MSG_MENU_ADVANCED_SEARCH, "search"),
    Item(MenuSmartRename, MSG_MENU_SMART_RENAME, "rename"),
    Item(MenuDuplicates, MSG_MENU_DUPLICATES),
    Line,
    Item(MenuGetHash, MSG_MENU_GET_HASH),
    Item(MenuSetFileDate, MSG_MENU_SET_FILE_DATE),
    Item(MenuHexView, MSG_MENU_HEX_VIEW),
    Item(MenuMakeLink, MSG_MENU_MAKE_LINK),
    Line,
    Item(MenuConvertImage, MSG_MENU_CONVERT_IMAGE),
    Item(MenuCoverArt, MSG_MENU_COVER_ART),
    Item(MenuToolTypes, MSG_MENU_TOOLTYPES),
    Line,
    Item(MenuRelabel, MSG_MENU_RELABEL),
    Item(MenuFormat, MSG_MENU_FORMAT),
    Line,
    Item(MenuShell, MSG_MENU_SHELL, "shell"),
    Item(MenuPreferences, MSG_MENU_PREFERENCES, "prefs"),

    Title(MenuUser, MSG_MENU_USER),

    Title(MenuARexx, MSG_MENU_AREXX),
    Item(MenuExecuteScript, MSG_EXECUTE_SCRIPT, "arexx"),

    Title(MenuWindow, MSG_MENU_WINDOW),
    Item(MenuNewTab, MSG_MENU_NEW_TAB, "newtab", ControlKey("T")),
    Item(MenuCloneTab, MSG_MENU_CLONE_TAB),
    Item(MenuOpenInTab, MSG_MENU_OPEN_IN_TAB, {}, {Key::ControlEnter}),
    Item(MenuCloseTab, MSG_MENU_CLOSE_TAB, "closetab", ControlKey("W")),
    Item(MenuCloseOtherTabs, MSG_MENU_CLOSE_OTHER_TABS),
    Line,
    Item(MenuNewWindow, MSG_MENU_NEW_WINDOW, "newwindow", {Key::Alt, "T"}),
    Item(MenuCloneWindow, MSG_MENU_CLONE_WINDOW),
    Item(MenuOpenInWindow, MSG_MENU_OPEN_IN_WINDOW, {}, {Key::AltEnter}),
    Item(MenuCloseOtherWindows, MSG_MENU_CLOSE_OTHER_WINDOWS),
    Item(MenuWorkbenchWindow, MSG_MENU_WORKBENCH_WINDOW),
    Line,
    Item(MenuArrange, MSG_MENU_ARRANGE),
    Sub(MenuCascade, MSG_MENU_CASCADE),
    Sub(MenuTileVertically, MSG_MENU_TILE_VERTICALLY),
    Sub(MenuTileHorizontally, MSG_MENU_TILE_HORIZONTALLY),
    Sub(MenuFourCorners, MSG_MENU_FOUR_CORNERS),
    Item(MenuPosition, MSG_MENU_POSITION),
    Sub(MenuCenter, MSG_MENU_CENTER),
    Sub(MenuThreeFourths, MSG_MENU_34_SCREEN),
    Sub(MenuFiveEighths, MSG_MENU_58_SCREEN),
    Sub(MenuOneHalf, MSG_MENU_12_SCREEN),
    SubLine,
    {.Depth = 2, .Id = MenuFullScreen, .Text = MSG_MENU_FULL_SCREEN, .Shown = PlainKey("F11")},
};

// Heads whose items all come and go.
constexpr MenuId HeadsOfLists[] = {MenuSelectByType,     MenuTabs, MenuPasteToComputer, MenuPasteToFavorites,
                                   MenuPasteToBookmarks, MenuUser};

// "Ctrl" and "Alt" as the user's language has them: the texts of the keys begin with them.
std::string Modifier(MessageNumber keyWithEnter) {
    const std::string_view text = SAK_LocaleString(keyWithEnter);
    return std::string(text.substr(0, text.find('+'))) + "+";
}

std::string KeyText(const ShownKey& key) {
    switch (key.Kind) {
    case Key::None:
        return {};
    case Key::Backspace:
        return std::string(SAK_LocaleString(MSG_KEY_BACKSPACE));
    case Key::ControlEnter:
        return std::string(SAK_LocaleString(MSG_KEY_CTRL_ENTER));
    case Key::AltEnter:
        return std::string(SAK_LocaleString(MSG_KEY_ALT_ENTER));
    case Key::Delete:
        return std::string(SAK_LocaleString(MSG_KEY_DELETE));
    case Key::Control:
        return Modifier(MSG_KEY_CTRL_ENTER).append(key.Name);
    case Key::Alt:
        return Modifier(MSG_KEY_ALT_ENTER).append(key.Name);
    case Key::Plain:
        return std::string(key.Name);
    }
    return {};
}

MenuItem ItemOf(const StripRow& row) {
    if (row.Id == MenuNone) {
        return {};
    }
    return {.Id = row.Id,
            .Label = std::string(SAK_LocaleString(row.Text)),
            .Key = KeyText(row.Shown),
            .Image = ToolImagePath(row.Image, MenuImageSide()),
            .Ghosted = ToolImagePath(row.Image, MenuImageSide(), ToolImageForm::Ghosted),
            .Mark = row.Mark,
            .IsHead = row.Depth == 0 || std::ranges::find(HeadsOfLists, row.Id) != std::end(HeadsOfLists)};
}

// The rows of that depth from the first one on, each with the deeper ones behind it.
std::vector<MenuItem> ItemsOf(std::span<const StripRow>& rows, int depth) {
    std::vector<MenuItem> items;
    while (!rows.empty() && rows.front().Depth == depth) {
        MenuItem item = ItemOf(rows.front());
        rows = rows.subspan(1);
        if (!rows.empty() && rows.front().Depth > depth) {
            item.IsHead = true;
            item.Items = ItemsOf(rows, depth + 1);
        }
        if (item.Id == MenuSelectByType) {
            item.Items = TypeItems();
        }
        items.push_back(std::move(item));
    }
    return items;
}

MenuItem ItemOfStrip(MenuId id) {
    const auto found = std::ranges::find(Strip, id, &StripRow::Id);
    if (id == MenuNone || found == std::end(Strip)) {
        return {};
    }
    std::span<const StripRow> rows(found, std::end(Strip));
    const int depth = rows.front().Depth;
    const auto end =
        std::ranges::find_if(rows.subspan(1), [&](const StripRow& row) { return row.Depth <= depth; });
    rows = std::span<const StripRow>(found, static_cast<std::size_t>(end - rows.begin()));
    return ItemsOf(rows, depth).front();
}

} // namespace

std::vector<MenuItem> StripItems() {
    std::span<const StripRow> rows(Strip);
    return ItemsOf(rows, 0);
}

std::vector<MenuItem> ItemsOfStrip(std::initializer_list<MenuId> items) {
    std::vector<MenuItem> made;
    for (const MenuId id : items) {
        made.push_back(ItemOfStrip(id));
    }
    return made;
}

MenuItem ItemWithText(MenuId id, std::string_view text) {
    return {.Id = id, .Label = std::string(text)};
}

std::vector<MenuItem> TypeItems() {
    constexpr std::array<MessageNumber, MostTypeItems> Groups = {
        MSG_GROUP_SYSTEM, MSG_GROUP_TEXT,    MSG_GROUP_DOCUMENT,  MSG_GROUP_SOUND, MSG_GROUP_INSTRUMENT,
        MSG_GROUP_MUSIC,  MSG_GROUP_PICTURE, MSG_GROUP_ANIMATION, MSG_GROUP_MOVIE};
    std::vector<MenuItem> items;
    for (std::size_t group = 0; group < Groups.size(); ++group) {
        items.push_back(
            ItemWithText(static_cast<MenuId>(MenuFirstType + group), SAK_LocaleString(Groups[group])));
    }
    return items;
}

int MenuImageSide() {
    return ToolImageSide(Prefs.MenuImageSize);
}

} // namespace solvane
