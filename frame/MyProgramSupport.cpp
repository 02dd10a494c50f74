#include "frame/MyProgramSupport.h"

#include "automation/ARexx.h"
#include "automation/Commodity.h"
#include "content/ColumnInfo.h"
#include "content/Drawers.h"
#include "fileops/Clipboard.h"
#include "frame/LanguageCheck.h"
#include "frame/Libraries.h"
#include "frame/Ports.h"
#include "frame/ToolChecks.h"
#include "interface/ContextMenus.h"
#include "interface/Iconify.h"
#include "interface/Images.h"
#include "interface/Locale.h"
#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/Processes.h"
#include "interface/Screens.h"
#include "interface/SetUp.h"
#include "interface/Tell.h"
#include "interface/Windows.h"
#include "locations/DiskEvents.h"
#include "locations/NavigationList.h"
#include "locations/TabRecords.h"
#include "media/Preview.h"
#include "model/Devices.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "online/NetworkInformation.h"
#include "platform/dos/Locks.h"
#include "platform/dos/Paths.h"
#include "platform/dos/Variables.h"
#include "platform/icon/Icon.h"
#include "prefs/LoadSavePrefs.h"
#include "prefs/PrefsLists.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Memory.h"
#include "sak/Messages.h"
#include "sak/Notify.h"

#include <array>
#include <string>
#include <string_view>

namespace solvane {

namespace {

constexpr std::uint32_t ProgramVersion = 2;
constexpr std::uint32_t ProgramRevision = 4;
constexpr std::string_view BuildDate = "19-Jun-19"; // 2019-06-19 in the system's own form

bool SAK_CreateTimeRequest() {
    SAK_TimerMP = std::make_unique<exec::Timer>();
    return SAK_TimerMP->Mask() != 0;
}

bool FormVersion() {
    VERSION_STRING = FormatText("%lu.%lu", ProgramVersion, ProgramRevision);
    DATE_STRING = BuildDate;
    return true;
}

bool KeepProgramDrawer() {
    SetAmiUpdateENVVariable("Solvane");
    return true;
}

bool ChoosePrefsFile() {
    ProgramPrefsFile.Clear();
    LoadWhichPrefs();
    if (ProgramPrefsFile.Empty() || !SAK_FileExists(ProgramPrefsFile.View())) {
        ProgramPrefsFile = DefaultPrefsFile;
    }
    LoadApplicationPrefs();
    return true;
}

bool SetUpGenericLists() {
    ContentList = SAK_CreateGenericList<ContentNode>();
    LinksList = SAK_CreateGenericList<LinksNode>();
    CommandLineTabsList = SAK_CreateGenericList<TabsNode>();
    ARexxList = SAK_CreateGenericList<ARexxNode>();
    DOSList = SAK_CreateGenericList<DOSNode>();
    return ContentList && LinksList && CommandLineTabsList && ARexxList && DOSList && CreatePrefsLists();
}

void FreeGenericLists() {
    ContentList.reset();
    LinksList.reset();
    CommandLineTabsList.reset();
    ARexxList.reset();
    DOSList.reset();
    FreePrefsLists();
    ExamineSingleList.reset();
    MasterDevicesList.reset();
    NavDevicesList.reset();
    RemovedDevicesList.reset();
    MasterAssignsList.reset();
    MultiAssignList.reset();
}

bool MakePort(std::unique_ptr<exec::MsgPort>& made) {
    made = std::make_unique<exec::MsgPort>();
    return made->Mask() != 0;
}

constexpr MessageNumber NoMessage{}; // of a step that cannot fail

struct SetUpStep {
    bool (*Run)();
    MessageNumber Message; // when it fails
};

constexpr std::array Steps = {
    SetUpStep{SAK_CreateTimeRequest, MSG_NO_TIMER},
    SetUpStep{FormVersion, NoMessage},
    SetUpStep{KeepProgramDrawer, NoMessage},
    SetUpStep{SAK_OpenInputDevice, MSG_NO_INPUT_DEVICE},
    SetUpStep{ChoosePrefsFile, NoMessage},
    SetUpStep{RegisterApp, MSG_NO_APPLICATION},
    SetUpStep{SetUpProcesses, MSG_NO_PROCESSES},
    SetUpStep{[] { return SAK_MemorySetup(3720, 93000); }, MSG_NO_POOL},
    SetUpStep{CCP_CreateClipboard, MSG_NO_IFF},
    SetUpStep{SetUpGenericLists, MSG_NO_LIST},
    SetUpStep{SetUpOtherLists, MSG_NO_LIST},
    SetUpStep{SetUpHooks, MSG_NO_HOOKS},
    SetUpStep{CreateColumnInfoPreview, MSG_NO_COLUMN_INFO},
    SetUpStep{[] { return MakePort(UserPort); }, MSG_NO_USER_PORT},
    SetUpStep{[] { return MakePort(AppIconPort); }, MSG_NO_ICONIFY_PORT},
    SetUpStep{SetUpARexx, MSG_NO_AREXX},
    SetUpStep{SetUpChooserLists, MSG_NO_LIST},
    SetUpStep{AllocateFileRequester, MSG_NO_FILE_REQUESTER},
    SetUpStep{AllocateFontRequester, MSG_NO_FONT_REQUESTER},
    SetUpStep{AllocateScreenModeRequester, MSG_NO_SCREEN_REQUESTER},
    SetUpStep{SAK_SetUpNotify, MSG_NO_NOTIFY},
    SetUpStep{[] { return MakePort(ScrNotPort); }, MSG_NO_USER_PORT},
    SetUpStep{CheckxadUnFileVersion, MSG_NO_XADUNFILE},
    SetUpStep{CheckForjhead, MSG_NO_JHEAD},
    SetUpStep{CheckForjpegtran, MSG_NO_JPEGTRAN},
    SetUpStep{CheckForFTPMount, NoMessage},
    SetUpStep{[] {
                  GetShellTooltypes();
                  return true;
              },
              NoMessage},
    SetUpStep{[] {
                  static_cast<void>(CheckFormatVersion()); // there need not be one
                  return true;
              },
              NoMessage},
    SetUpStep{CheckSoundDatatypeVersion, NoMessage},
    SetUpStep{[] { return SAK_SetupNetworkInformation() && SAK_GetNetworkInformation(); }, MSG_NO_LIST},
};

void FreePorts() {
    AppIconPort.reset();
    UserPort.reset();
    port.reset();
}

// Row lists, column information and the gadgets' own lists, in the order in which they lean on each other.
void FreeWindowLists() {
    DetachAllLists();
    if (MainWindow) {
        FreeNavigationList();
        FreeAllTabs();
    }
    DisposeHiddenChoosers();
    FreeChooserLists();
    FreeColumnInfoAll();
    FreeColumnInfoPreview();
    FreeOtherLists();
    FreeFilmstripList();
    FreeGenericLists();
    CCP_FreeClipboard();
    FreeHooks();
    FreeMainMenuStrip();
    FreeContextMenus();
}

} // namespace

bool MPS_SetUp() {
    for (const SetUpStep& step : Steps) {
        if (!step.Run()) {
            TellTerminate(step.Message);
            return false;
        }
    }
    SAK_AutoLockWindow = 1;
    return true;
}

void MPS_ShutDown() {
    Uniconify();
    SAK_ShutDownNetworkInformation();
    ShutDownAppMenuItem();
    ShutDownCommodity();
    SetPreviewPaneNone();
    ShutDownProcesses();
    if (PrefsExist != 0 && QuitNoSave == 0) {
        SavePrefs(Prefs.SavePrefsOnExit);
    }
    ShutDownARexx();
    FreeRequesters();
    SAK_TimerMP.reset();
    EndScreenNotification();
    ScrNotPort.reset();
    ShutDownNotifyVar();
    SAK_ShutDownNotify();
    EndDiskEvents();
    FreeWindowLists();
    CloseWindowObject();
    DisposeBitMapImages();
    ReleaseActiveScreen();
    if (PrefsExist != 0) {
        FreePrefs();
    }
    UnregisterApp();
    FreePorts();
    if (done2 != 0) {
        OpenNewSolvaneWindow("DO_OPEN_WINDOW");
    }
    SAK_LocaleClose();
    SAK_CloseInputDevice();
    SAK_MemoryCleanup();
    CloseLibrariesClasses();
}

void GetPROGDIR() {
    const dos::FileLock drawer = dos::Lock("PROGDIR:");
    ProgramDir = dos::NameFromLock(drawer);
    if (!SAK_JoinFilename(ProgramComplete, ProgramDir.View(), ProgramName.View())) {
        ProgramComplete.Clear();
    }
    if (!SAK_JoinFilename(RinghioImageBuffer, ProgramDir.View(), "Images/Ringhio.png")) {
        RinghioImageBuffer.Clear();
    }
}

void GetSYSDevice() {
    SYSDevice = dos::DevNameFromLock(dos::Lock("SYS:"), dos::DevName::DeviceOnly);
}

void SetAmiUpdateENVVariable(const char* name) {
    DisableRequesters();
    const std::string drawer = dos::NameFromLock(dos::Lock("PROGDIR:"));
    if (!drawer.empty()) {
        static_cast<void>(dos::SetVar("AppPaths/" + std::string(name), drawer, dos::VarScope::GlobalSaved));
    }
    EnableRequesters();
}

void GetShellTooltypes() {
    const auto shell = icon::GetDiskObject("SYS:System/Shell");
    if (!shell) {
        return;
    }
    ShellWindowArg = icon::FindToolType(*shell, "WINDOW").value_or(std::string());
    ShellStackArg = icon::FindToolType(*shell, "STACK").value_or(std::string());
    ShellFromArg = icon::FindToolType(*shell, "FROM").value_or(std::string());
}

} // namespace solvane
