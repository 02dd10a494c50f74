// The record of the user's settings, each field named by its key in the preferences document.
// prefs/ loads, saves and edits it; everything else reads it. Defaults stand beside the fields, in the order
// of the document; flags are 0 or 1.
#pragma once

#include "sak/Text.h"

#include <cstdint>

namespace solvane {

struct PrefsRecord {
    // Panes: weights in per cent; a folded section of the Navigation pane is hidden
    std::int32_t NavigationWidth = 25;
    std::int32_t ContentHeight = 25; // in force while PreviewStyle is 0, else ContentWidth
    std::int32_t ContentWidth = 25;
    std::int32_t ThumbnailPreviewWidth = 13;
    std::int32_t DetailsHeight = 15;
    std::int16_t FavoritesHidden = 0, ComputerHidden = 0, FTPSitesHidden = 0;

    // Sorting: direction 0 is ascending
    std::int16_t WorkbenchSortDirection = 0, ComputerSortDirection = 0, AssignsSortDirection = 0;
    std::int16_t FTPSitesSortDirection = 0, SearchSortDirection = 0, ArchiveSortDirection = 0;
    std::int16_t ContentSortDirection = 0;
    std::int32_t ComputerDetailsCISortColumn = 1, FTPSitesDetailsCISortColumn = 1;
    std::int32_t ArchiveDetailsCISortColumn = 1, ContentDetailsCISortColumn = 1;

    // Columns: pixels. The first of each group holds the icon and has always this width.
    std::int32_t Bookmarks_0Width = 26, Bookmarks_1Width = 150, Bookmarks_2Width = 250;
    std::int32_t Favorites_0Width = 26, Favorites_1Width = 150, Favorites_2Width = 250;
    std::int32_t FTPSites_0Width = 26, FTPSites_1Width = 200, FTPSites_2Width = 200, FTPSites_3Width = 250;
    std::int32_t FTPSitesRecent_0Width = 26, FTPSitesRecent_1Width = 150, FTPSitesRecent_2Width = 100;
    std::int32_t FTPSitesRecent_3Width = 70, FTPSitesRecent_4Width = 70, FTPSitesRecent_5Width = 125;
    std::int32_t FTPSitesRecent_6Width = 250;
    std::int32_t FTPSitesFull_0Width = 26, FTPSitesFull_1Width = 150, FTPSitesFull_2Width = 70;
    std::int32_t FTPSitesFull_3Width = 70, FTPSitesFull_4Width = 125, FTPSitesFull_5Width = 250;
    std::int32_t Content_0Width = 40, Content_1Width = 375, Content_2Width = 225;
    std::int32_t Assigns_1Width = 200, Search_1Width = 250; // the columns behind take the rest

    // Behaviour
    std::int16_t UseCommodity = 0;
    Text<130> HotKey = "-capslock lcommand e";
    // Mouse buttons: 0 none, 1 double click, 2 parent, 3 history back, 4 history forward, 5 open in new tab
    std::int32_t MiddleButtonAction = 0, FourthButtonAction = 0, FifthButtonAction = 0;
    std::int16_t PersistentSelect = 0;
    std::int16_t PreserveFileDate = 1;
    std::int16_t MonitorDrawer = 1;
    std::int16_t VerifyQuit = 0;
    std::int16_t EnableRinghio = 0;
    std::int16_t IncludeREXX = 0;
    std::int16_t ShowNavListbrowserHints = 1, ShowConListbrowserHints = 1;
    std::int16_t EnableInlineRename = 1;
    std::int16_t ShowInAmiDock = 1;
    std::int16_t ShowFullPathForAssigns = 0;
    std::int16_t SavePrefsOnExit = 1;
    std::int16_t EscapeToQuit = 0;
    std::int16_t UseInternalInformationSystem = 1;

    // Window, icon and bars
    std::int16_t OpenOnOwnScreen = 0;
    std::int32_t WindowX = 50, WindowY = 30, WindowWidth = 700, WindowHeight = 500; // pixels
    std::int16_t AutosaveWindowPosition = 0;
    std::int16_t StartIconified = 0;
    std::int16_t IconifyAppIcon = 1, IconifyAppMenu = 0, IconifyAppDocky = 0;
    std::int32_t Icon_X = -1, Icon_Y = -1;                // -1: where the desktop puts it
    std::int32_t MenuImageSize = 1, ToolbarImageSize = 1; // 0 is 16 pixels, 1 is 24
    std::int32_t ShowVolumeLabelAs = 0;                   // 0 "Workbench: (DH0:)", 1 "Workbench:",
                                                          // 2 "DH0: (Workbench:)", 3 "DH0:"
    std::int32_t SortDevices = 0;                         // 0 by device name, 1 by volume name
    std::int32_t DrawersOrder = 0;                        // 0 drawers first, 1 mixed, 2 files first
    std::int16_t ShowEmptyDevices = 0;
    std::int16_t BookmarksBar = 0, Toolbar = 1, UserButtonsBar = 0;
    std::int16_t NavigationPane = 1, PreviewPane = 0, ThumbnailPane = 1, DetailsPane = 1, StatusBar = 1;

    // Views and dates
    std::int32_t DateFormat = 1;  // 0 default, 1 locale, 2 custom
    Text<35> CustomDateFormat;    // default: the locale's, put in when the document is read
    Text<35> EffectiveDateFormat; // not in the document: the format in force, written by SetDateFormatInForce
    std::int32_t TilesIconSize = 64;        // pixels
    std::int32_t ThumbnailSize = 2;         // step
    std::int32_t FilmstripStyle = 1;        // 0 flat, 1 "3D"
    std::int32_t FilmstripEffect = 1;       // 0 none, 1 reflection
    std::int32_t FilmstripPosOfCurrent = 0; // 0 left or top, 1 center
    std::int16_t FilmstripOnlyDrawersAndImages = 0, FilmstripNoUpscale = 0;
    std::int16_t ChangeAllTabs = 0;
    // Values of ViewStyle; beyond ViewContent only for ContentViewStyle
    std::int32_t BookmarksViewStyle = 1, FavoritesViewStyle = 1, WorkbenchViewStyle = 1;
    std::int32_t ComputerViewStyle = 1, AssignsViewStyle = 1, FTPSitesViewStyle = 1, ArchiveViewStyle = 1;
    std::int32_t ContentViewStyle = 1;
    std::int16_t ProcessInfoFiles = 1;
    std::int16_t ShowHiddenEntries = 0; // rows for names that begin with "."
    std::int16_t ShowActualIcons = 0;
    std::int16_t EnableWHDLoadSupport = 0;
    Text<1024> WHDLoadGamesRootDrawer;

    // Preview and media
    std::int32_t PreviewStyle = 0; // 0 horizontal, 1 vertical
    std::int32_t TextTabSize = 4;
    std::int16_t UseDefaultFont = 0;
    Text<130> TextFont = "DejaVu Sans.font";
    std::int32_t TextFontSize = 14;
    Text<128> MonoTextFont = "DejaVu Sans Mono.font";
    std::int32_t MonoTextFontSize = 14;
    std::int16_t AutoplaySoundFiles = 1;
    std::int32_t SoundVolume = 64; // 0 to 64
    std::int16_t ShowMP3Data = 1;
    std::int32_t CoverArtName = 0; // 0 "Folder.jpg", 1 "Cover.jpg"
    std::int16_t CoverArtKeepOriginal = 1;
    std::int32_t CoverArtWidth = 500, CoverArtHeight = 500; // pixels
    std::int16_t ShowImageDetails = 0;
    Text<10> ImageBackgroundColor = "ZZZZZZ"; // no colour was chosen
    Text<10> ImageDetailsTextColor = "000000";
    std::int16_t ShowEXIFData = 0;
    std::int16_t RotateJPEG = 1;
    std::int16_t ShowThumbnail = 1;
    std::int16_t ShowAnimLoadingProgress = 0;
    std::int32_t DetermineDatatype = 0;   // 0 when scanning, 1 when selecting, 2 never
    std::int32_t WhenScanningADrawer = 0; // 0 collect all, 1 only the file type

    // Start location
    std::int32_t DefaultOpenAt = 5; // a LocationKind
    Text<128> DefaultOpenAtName;    // default: "Computer" in the user's language, put in as above
    Text<1024> DefaultOpenAtPath = "Computer";

    // Appearance: colours are six hexadecimal digits, RRGGBB
    Text<10> DevicesColor = "000000";
    std::int16_t DevicesBold = 0, DevicesItalic = 0, DevicesUnderline = 0;
    Text<10> AssignsColor = "000000";
    std::int16_t AssignsBold = 0, AssignsItalic = 0, AssignsUnderline = 0;
    Text<10> DrawersColor = "000000";
    std::int16_t DrawersBold = 0, DrawersItalic = 0, DrawersUnderline = 0;
    Text<10> FilesColor = "000000";
    std::int16_t FilesBold = 0, FilesItalic = 0, FilesUnderline = 0;
    Text<10> LinksColor = "000000";
    std::int16_t LinksBold = 0, LinksItalic = 0, LinksUnderline = 1;
    Text<10> NavBackground1Color = "CFCFCF", NavBackground2Color = "C0C0C0";
    Text<10> Background1Color = "CFCFCF", Background2Color = "C0C0C0";
    std::int16_t ColorsInNavPane = 0;
    std::int16_t AutoFitColumns = 0;
    std::int16_t ShowFavorites = 1;

    // Search and archives
    std::int16_t SearchResultsNewTab = 1, DuplicateFileResultsNewTab = 1;
    std::int32_t DuplicateFileHashType = 3; // 0 CRC16, 1 CRC32, 2 MD5, 3 SHA1, 4 SHA-256
    Text<1024> ArchiveManager = "SYS:Utilities/Unarc";
    Text<50> LhAAddOptions = "-e";
    Text<1024> DefaultExtractPath = "RAM:";
    Text<50> ExtractArchiveOptions;
    std::int16_t UseLhAToExtractLhA = 1, OpenExtractionPath = 1;
    std::int16_t ShowArchiveOutputWindow = 0;

    // The program that edits each class of files, and whether that is a script
    Text<1024> EditSystem = "Zaphod";
    Text<1024> EditText = "SYS:Utilities/Notepad";
    Text<1024> EditDocument = "AbiWord";
    Text<1024> EditSound = "ID3Editor";
    Text<1024> EditInstrument, EditMusic, EditAnimation;
    Text<1024> EditPicture = "PPaint";
    Text<1024> EditMovie = "VideoClipper";
    std::int16_t EditSystemScript = 0, EditTextScript = 0, EditDocumentScript = 0, EditSoundScript = 0;
    std::int16_t EditInstrumentScript = 0, EditMusicScript = 0, EditPictureScript = 0;
    std::int16_t EditAnimationScript = 0, EditMovieScript = 0;

    // Online and the rest
    std::int16_t ShowFTPSites = 1, ShowOS4DepotRecent = 1, ShowOS4DepotFull = 1;
    std::int16_t ShowAminetRecent = 1, ShowAminetFull = 1, ShowUserSites = 1;
    Text<1024> DownloadPath = "RAM:";
    std::int32_t OutputWindowX = 0, OutputWindowY = 25, OutputWindowWidth = 640, OutputWindowHeight = 200;
    std::int16_t CloseOutputWindow = 0;
    std::int16_t CheckForUpdates = 0;
    std::int32_t UpdateFrequency = 1; // 0 day, 1 week, 2 month
    Text<50> PreferredLanguage;
};

// --- State ---

extern PrefsRecord Prefs;        // valid between DefaultPrefs and FreePrefs
extern std::uint16_t PrefsExist; // Prefs is valid; written by DefaultPrefs and FreePrefs

// Mirrors of a setting that outlive a change of it; written by each load, and then by their users.
extern std::uint16_t NewOpenOnOwnScreen; // where the next window opens
extern std::int32_t SoundVolume;         // 0 to 64; follows the volume slider

// The program waits in the background for its hot key: Prefs.UseCommodity, where the display and the key
// allow it. Written by SetUpCommodity and ShutDownCommodity.
extern std::uint16_t CommodityInForce;

// Whether the program shows itself in the dock; known before the document can be read. Written by
// LoadApplicationPrefs and by a load of other preferences.
extern std::uint16_t appShowInAmiDock;

} // namespace solvane
