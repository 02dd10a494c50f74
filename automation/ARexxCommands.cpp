#include "automation/ARexxCommands.h"

#include "automation/ARexxHandlers.h"
#include "automation/Instances.h"
#include "automation/SelectCommands.h"
#include "locations/DiskOperations.h"
#include "locations/KeptPlaces.h"
#include "locations/OpenTabs.h"
#include "locations/PlaceRouter.h"
#include "locations/Tabs.h"
#include "locations/ViewChange.h"
#include "locations/VisitHistory.h"

#include <array>

namespace solvane {

namespace {

template <Arrangement How>
void Arrange() {
    ArrangeWindows(How);
}

template <int Parts, int Of>
void Size() {
    SizeToPartOfScreen({Parts, Of});
}

// The number 24 is not used.
constexpr auto Table = std::to_array<rexx::Command>({
    {"VERSION", 0, rexx_Version, "", 0},
    {"ACTIVATE", 1, rexx_Activate, "", 0},
    {"DEACTIVATE", 2, rexx_Deactivate, "", 0},
    {"LOCKGUI", 3, WhenOpen<LockMainWindow>, "", 0},
    {"UNLOCKGUI", 4, rexx_UnlockGui, "", 0},
    {"ICONIFY", 5, rexx_Iconify, "", 0},
    {"UNICONIFY", 6, rexx_Uniconify, "", 0},
    {"BACK", 7, WhenOpen<GoBackInHistory>, "", 0},
    {"FORWARD", 8, WhenOpen<GoForwardInHistory>, "", 0},
    {"PARENT", 9, rexx_Parent, "", 0},
    {"RELOAD", 10, WhenOpen<ReloadLocation>, "", 0},
    {"SELECTDRAWER", 11, rexx_SelectDrawer, "NAME/K", 0},
    {"SELECTFILE", 12, rexx_SelectFile, "NAME/K", 0},
    {"SELECTALL", 13, WhenOpen<SelectAll>, "", 0},
    {"SELECTNONE", 14, WhenOpen<SelectNone>, "", 0},
    {"TOGGLESELECTION", 15, WhenOpen<ToggleSelection>, "", 0},
    {"SELECTBYTYPE", 16, rexx_SelectByType, "TYPE/N", 0},
    {"PATTERN", 17, rexx_Pattern, "PATTERN/K,CASE/S", 0},
    {"CUT", 18, rexx_Accept, "", 0},
    {"CUTAPPEND", 19, rexx_Accept, "", 0},
    {"COPY", 20, rexx_Accept, "", 0},
    {"COPYAPPEND", 21, rexx_Accept, "", 0},
    {"PASTE", 22, rexx_Accept, "", 0},
    {"PASTETO", 23, rexx_Accept, "PATH/K", 0},
    {"DELETE", 25, rexx_Accept, "VERIFY/S", 0},
    {"NEWDRAWER", 26, rexx_Accept, "DRAWER/K,ADDICON/S", 0},
    {"RENAME", 27, rexx_Rename, "OLD/K,NEW/K", 0},
    {"PROTECT", 28, rexx_Accept, "", 0},
    {"FILENOTE", 29, rexx_Accept, "", 0},
    {"ARCHIVE", 30, rexx_Accept, "", 0},
    {"EDIT", 31, rexx_Accept, "", 0},
    {"GETDRAWERSIZE", 32, rexx_Accept, "", 0},
    {"ADDICON", 33, rexx_Accept, "", 0},
    {"REMOVEICON", 34, rexx_Accept, "", 0},
    {"DOWNLOAD", 35, rexx_Accept, "", 0},
    {"GETVERSION", 36, rexx_GetVersion, "PATH/K", 0},
    {"INFORMATION", 37, rexx_Accept, "", 0},
    {"LEAVEOUT", 38, rexx_Accept, "", 0},
    {"PUTAWAY", 39, rexx_Accept, "", 0},
    {"ADDBOOKMARK", 40, rexx_AddBookmark, "", 0},
    {"OPENALLBOOKMARKSINTABS", 41, WhenOpen<OpenAllBookmarksInTabs>, "", 0},
    {"OPENALLBOOKMARKSINWINDOWS", 42, WhenOpen<OpenAllBookmarksInWindows>, "", 0},
    {"SELECTBOOKMARK", 43, rexx_SelectBookmark, "NUM/N", 0},
    {"ADDFAVORITE", 44, rexx_AddFavorite, "", 0},
    {"OPENALLFAVORITESINTABS", 45, WhenOpen<OpenAllFavoritesInTabs>, "", 0},
    {"OPENALLFAVORITESINWINDOWS", 46, WhenOpen<OpenAllFavoritesInWindows>, "", 0},
    {"SELECTFAVORITE", 47, rexx_SelectFavorite, "NUM/N", 0},
    {"SELECTFTPSITE", 48, rexx_SelectFTPSite, "NUM/N", 0},
    {"VIEWSTYLE", 49, rexx_ViewStyle, "STYLE/N", 0},
    {"LAYOUT", 50, rexx_Layout, "LAYOUT/N", 0},
    {"DRAWERSORDER", 51, rexx_DrawersOrder, "ORDER/N", 0},
    {"PROCESSINFOFILES", 52, WhenOpen<ProcessInfoFiles>, "", 0},
    {"SHOWACTUALICONS", 53, WhenOpen<ShowActualIcons>, "", 0},
    {"SHOWTHUMBNAIL", 54, WhenOpen<ShowThumbnail>, "", 0},
    {"ADVANCEDSEARCH", 55, rexx_Accept, "", 0},
    {"SMARTRENAME", 56, rexx_Accept, "", 0},
    {"DUPLICATEFILEFINDER", 57, rexx_Accept, "", 0},
    {"GETHASH", 58, rexx_Accept, "", 0},
    {"SETFILEDATE", 59, rexx_Accept, "", 0},
    {"HEXVIEW", 60, rexx_Accept, "PATH/K", 0},
    {"MAKELINK", 61, rexx_Accept, "NAME/K,DEST/K,TYPE/N", 0},
    {"RELABELDISK", 62, WhenOpen<RelabelDisk>, "", 0},
    {"FORMATDISK", 63, WhenOpen<FormatDisk>, "", 0},
    {"SWITCHTAB", 64, rexx_SwitchTab, "NUM/N", 0},
    {"OPENNEWTAB", 65, rexx_OpenNewTab, "PATH/K", 0},
    {"CLONETAB", 66, WhenOpen<CloneTab>, "", 0},
    {"OPENINNENWTAB", 67, WhenOpen<OpenMultipleNewTabs>, "", 0},
    {"CLOSETAB", 68, rexx_CloseTab, "NUM/N", 0},
    {"CLOSEALLBUTTHISTAB", 69, WhenOpen<CloseAllButThisTab>, "", 0},
    {"NEWWINDOW", 70, rexx_NewWindow, "PATH/M", 0},
    {"CLONEWINDOW", 71, WhenOpen<CloneWindow>, "PATH/M", 0},
    {"OPENINNENWWINDOW", 72, WhenOpen<OpenMultipleNewSolvaneWindows>, "PATH/M", 0},
    {"CLOSEALLBUTTHISWINDOW", 73, WhenOpen<CloseAllButThisWindow>, "", 0},
    {"OPENWORKBENCHWINDOW", 74, rexx_Accept, "PATH/M", 0},
    {"CASCADE", 75, WhenOpen<Arrange<Arrangement::Cascade>>, "", 0},
    {"TILEVERTICALLY", 76, WhenOpen<Arrange<Arrangement::Vertical>>, "", 0},
    {"TILEHORIZONTALLY", 77, WhenOpen<Arrange<Arrangement::Horizontal>>, "", 0},
    {"FOURCORNERS", 78, WhenOpen<Arrange<Arrangement::FourCorners>>, "", 0},
    {"CENTERWINDOW", 79, WhenOpen<CenterWindow>, "", 0},
    {"34SCREENSIZE", 80, WhenOpen<Size<3, 4>>, "", 0},
    {"58SCREENSIZE", 81, WhenOpen<Size<5, 8>>, "", 0},
    {"12SCREENSIZE", 82, WhenOpen<Size<1, 2>>, "", 0},
    {"FULLSCREEN", 83, WhenOpen<FullScreen>, "", 0},
    {"CHANGEPATH", 84, rexx_ChangePath, "PATH/K", 0},
    {"SEARCH", 85, rexx_Accept, "", 0},
    {"GETPUBSCREENNAME", 86, rexx_GetPubScreenName, "", 0},
    {"GETCURRENTPATH", 87, rexx_GetCurrentPath, "", 0},
    {"GETNUMDRAWERS", 88, rexx_GetNumDrawers, "", 0},
    {"GETNUMFILES", 89, rexx_GetNumFiles, "", 0},
    {"GETNUMENTRIES", 90, rexx_GetNumEntries, "", 0},
    {"GETNUMDRAWERSSELECTED", 91, rexx_GetNumDrawersSelected, "", 0},
    {"GETNUMFILESSELECTED", 92, rexx_GetNumFilesSelected, "", 0},
    {"GETNUMENTRIESSELECTED", 93, rexx_GetNumEntriesSelected, "", 0},
    {"GETBYTESSELECTED", 94, rexx_GetBytesSelected, "", 0},
    {"GETTOTALBYTES", 95, rexx_GetTotalBytes, "", 0},
    {"PREFERENCES", 96, rexx_Accept, "", 0},
    {"LOADPREFS", 97, rexx_LoadPrefs, "", 0},
    {"SAVEPREFS", 98, rexx_SavePrefs, "", 0},
    {"MOVEWINDOW", 99, rexx_MoveWindow, "X/K/N,Y/K/N", 0},
    {"SIZEWINDOW", 100, rexx_SizeWindow, "W/K/N,H/K/N", 0},
    {"CHANGEWINDOW", 101, rexx_ChangeWindow, "X/K/N,Y/K/N,W/K/N,H/K/N", 0},
    {"WINDOWTOFRONT", 102, rexx_WindowToFront, "", 0},
    {"WINDOWTOBACK", 103, rexx_WindowToBack, "", 0},
    {"ACTIVATEWINDOW", 104, rexx_ActivateWindow, "", 0},
    {"ZOOMWINDOW", 105, rexx_ZoomWindow, "", 0},
    {"UNZOOMWINDOW", 106, rexx_UnzoomWindow, "", 0},
    {"JUMPTOSCREEN", 107, rexx_JumpToScreen, "SCREEN/K", 0},
    {"QUITNOSAVE", 108, rexx_QuitNoSave, "", 0},
    {"QUIT", 109, rexx_Quit, "", 0},
    {"QUITALL", 110, rexx_QuitAll, "", 0},
    {"PASTESTATUS", 111, rexx_PasteStatus, "CE/K/N", 0},
});

} // namespace

std::span<const rexx::Command> ARexxCommands() {
    return Table;
}

} // namespace solvane
