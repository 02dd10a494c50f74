// The numbers of the menu items, by which a pick is reported and an item's state is set. What a number does
// is decided by the main loop.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace solvane {

// The heads of menus and sub-menus have numbers too and do nothing when they are picked.
enum MenuId : std::uint16_t {
    MenuProject = 1,
    MenuCheckVersion = 2,
    MenuLoadPrefs = 3,
    MenuSavePrefs = 4,
    MenuIconify = 5,
    MenuAbout = 6,
    MenuQuit = 7,
    MenuQuitAll = 8,

    MenuGo = 9,
    MenuBack = 10,
    MenuForward = 11,
    MenuParent = 12,
    MenuReload = 13,
    MenuGoBookmarks = 14,
    MenuGoFavorites = 15,
    MenuGoWorkbench = 16,
    MenuGoComputerHead = 17, // of the place and its devices
    MenuGoComputer = 18,
    MenuGoAssigns = 19,
    MenuGoFTPSites = 20,

    MenuSelection = 21,
    MenuSelectAll = 22,
    MenuSelectNone = 23,
    MenuToggleSelection = 24,
    MenuSelectByType = 25,
    MenuPattern = 26,
    MenuCut = 27,
    MenuCopy = 28,
    MenuPaste = 29,
    MenuPasteTo = 30,
    MenuTabs = 31,
    MenuFirstTab = 32, // ten of them

    MenuActions = 43,
    MenuExecuteCommand = 44,
    MenuDelete = 45,
    MenuNewDrawer = 46,
    MenuRename = 47,
    MenuProtect = 48,
    MenuFilenote = 49,
    MenuArchive = 50,
    MenuOpenArchive = 51,
    MenuExtractToDefault = 52,
    MenuExtractHere = 53,
    MenuExtractArchive = 54,
    MenuAddToArchive = 55,
    MenuArchiveItem = 56,
    MenuArchiveSeparately = 57,
    MenuConvertArchive = 58,
    MenuTestArchive = 59,
    MenuEdit = 60,
    MenuGetDrawerSize = 61,
    MenuAddIcon = 62,
    MenuRemoveIcon = 63,
    MenuDownload = 64,
    MenuLeaveOut = 65,
    MenuPutAway = 66,
    MenuGetVersion = 67,
    MenuInformation = 68,

    MenuBookmarks = 69,
    MenuAddBookmark = 70,
    MenuOrganizeBookmarks = 71,
    MenuBookmarksInTabs = 72,
    MenuBookmarksInWindows = 73,

    MenuFavorites = 75,
    MenuAddFavorite = 76,
    MenuOrganizeFavorites = 77,
    MenuFavoritesInTabs = 78,
    MenuFavoritesInWindows = 79,

    MenuFTPSites = 81,
    MenuOrganizeFTPSites = 82,
    MenuOS4Depot = 83,
    MenuOS4DepotRecent = 84,
    MenuOS4DepotFull = 85,
    MenuAminet = 86,
    MenuAminetRecent = 87,
    MenuAminetFull = 88,

    MenuView = 89,
    MenuViewStyle = 90,
    MenuStyleList = 91, // the other styles follow in the order of their values
    MenuStyleDetails = 92,
    MenuStyleTiles = 93,
    MenuStyleContent = 94,
    MenuStyleThumbnail = 95,
    MenuStyleThumbnailDetails = 96,
    MenuStyleFilmstrip = 97,
    MenuLayout = 98,
    MenuLayoutBookmarks = 99, // the others follow in the order of the Layout chooser
    MenuLayoutToolbar = 100,
    MenuLayoutUserButtons = 101,
    MenuLayoutNavigation = 102,
    MenuLayoutPreviewHorizontal = 103,
    MenuLayoutPreviewVertical = 104,
    MenuLayoutDetails = 105,
    MenuLayoutThumbnail = 106,
    MenuLayoutStatusBar = 107,
    MenuTogglePreview = 108,
    MenuToggleMetadata = 109,
    MenuDrawersOrder = 110,
    MenuDrawersFirst = 111,
    MenuDrawersMixed = 112,
    MenuDrawersLast = 113,
    MenuProcessInfo = 114,
    MenuShowActualIcons = 115,
    MenuShowThumbnail = 116,

    MenuTools = 117,
    MenuAdvancedSearch = 118,
    MenuSmartRename = 119,
    MenuDuplicates = 120,
    MenuGetHash = 121,
    MenuSetFileDate = 122,
    MenuHexView = 123,
    MenuMakeLink = 124,
    MenuConvertImage = 125,
    MenuCoverArt = 126,
    MenuToolTypes = 127,
    MenuRelabel = 128,
    MenuFormat = 129,
    MenuShell = 130,
    MenuPreferences = 131,

    MenuUser = 133,
    MenuARexx = 134,
    MenuExecuteScript = 135,

    MenuWindow = 137,
    MenuNewTab = 138,
    MenuCloneTab = 139,
    MenuOpenInTab = 140,
    MenuCloseTab = 141,
    MenuCloseOtherTabs = 142,
    MenuNewWindow = 143,
    MenuCloneWindow = 144,
    MenuOpenInWindow = 145,
    MenuCloseOtherWindows = 146,
    MenuWorkbenchWindow = 147,
    MenuArrange = 148,
    MenuCascade = 149,
    MenuTileVertically = 150,
    MenuTileHorizontally = 151,
    MenuFourCorners = 152,
    MenuPosition = 153,
    MenuCenter = 154,
    MenuThreeFourths = 155,
    MenuFiveEighths = 156,
    MenuOneHalf = 157,
    MenuFullScreen = 158,
    MenuShowHidden = 159,

    // Of the context menus alone.
    MenuOpen = 160,
    MenuExecuteSelected = 161,
    MenuSetBackground = 162,
    MenuSortBy = 163,
    MenuAscending = 164,
    MenuDescending = 165,
    MenuRowOpen = 166, // of the row in the Navigation pane that the menu is about
    MenuRowInTab = 167,
    MenuRowInWindow = 168,
    MenuFirstSortColumn = 180, // by the number of the column

    // The first number of each kind of item that comes and goes; its place in its list is added.
    MenuFirstUserButton = 400,
    MenuFirstBookmark = 500,
    MenuFirstFavorite = 600,
    MenuFirstScript = 700,
    MenuFirstFTPSite = 800,
    MenuFirstType = 900,       // nine kinds of files
    MenuPasteToComputer = 999, // heads
    MenuPasteToFavorites = 1300,
    MenuPasteToBookmarks = 1301,
    MenuPasteToDevice = 1000,
    MenuPasteToFavorite = 1100,
    MenuPasteToBookmark = 1200,
    MenuFirstDevice = 2000,

    MenuNone = 0,
};

inline constexpr std::size_t MostListItems = 100; // of one kind; what is behind them has no item
inline constexpr std::size_t MostTabItems = 10, MostTypeItems = 9, MostSortColumns = 40;

// The item that a button of the toolbar stands for, by the button's number less one. State and command of the
// button are those of the item; items that have none are reached by the menu alone.
inline constexpr std::array<MenuId, 24> ItemOfButton = {
    MenuSelectAll,     MenuSelectNone,    MenuToggleSelection, MenuSelectByType, MenuPattern,
    MenuCut,           MenuCopy,          MenuPaste,           MenuDelete,       MenuNewDrawer,
    MenuRename,        MenuProtect,       MenuFilenote,        MenuArchive,      MenuEdit,
    MenuGetDrawerSize, MenuAddIcon,       MenuRemoveIcon,      MenuGetVersion,   MenuInformation,
    MenuDownload,      MenuExecuteScript, MenuLeaveOut,        MenuPutAway};

} // namespace solvane
