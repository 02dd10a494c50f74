#include "frame/MyProgramSupport.h"

#include "automation/ARexx.h"
#include "automation/Commodity.h"
#include "automation/Windows.h"
#include "content/ColumnInfo.h"
#include "content/Drawers.h"
#include "fileops/Clipboard.h"
#include "frame/LanguageCheck.h"
#include "frame/Libraries.h"
#include "frame/Ports.h"
#include "frame/Processes.h"
#include "frame/Terminate.h"
#include "frame/ToolChecks.h"
#include "interface/Iconify.h"
#include "interface/Images.h"
#include "interface/Locale.h"
#include "interface/MainLayout.h"
#include "interface/Menus.h"
#include "interface/Screens.h"
#include "interface/SetUp.h"
#include "locations/NavigationList.h"
#include "locations/Tabs.h"
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
#include "sak/Memory.h"
#include "sak/Notify.h"
#include "sak/Requesters.h"

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
    MasterAssignsList.reset();
}

bool MakePort(std::unique_ptr<exec::MsgPort>& made) {
    made = std::make_unique<exec::MsgPort>();
    return made->Mask() != 0;
}

// One step of set-up. A step whose message is empty cannot fail.
struct SetUpStep {
    bool (*Run)();
    std::string_view Message;
};

constexpr std::array Steps = {
    SetUpStep{SAK_CreateTimeRequest, "Failed to set up timer system."},
    SetUpStep{FormVersion, ""},
    SetUpStep{KeepProgramDrawer, ""},
    SetUpStep{SAK_OpenInputDevice, "Could not open input.device."},
    SetUpStep{ChoosePrefsFile, ""},
    SetUpStep{RegisterApp, "Failed to register application."},
    SetUpStep{SetUpProcesses, "Failed to set up processes."},
    SetUpStep{[] { return SAK_MemorySetup(3720, 93000); }, "Could not create memory pool."},
    SetUpStep{CCP_CreateClipboard, "AllocIFF() failed."},
    SetUpStep{SetUpGenericLists, "Could not create Exec list."},
    SetUpStep{SetUpOtherLists, "Could not create Exec list."},
    SetUpStep{SetUpHooks, "Failed to set up hooks."},
    SetUpStep{CreateColumnInfoPreview, "Could not create column info."},
    SetUpStep{[] { return MakePort(UserPort); }, "Could not create user port."},
    SetUpStep{[] { return MakePort(AppIconPort); }, "Could not create iconify port."},
    SetUpStep{SetUpARexx, "Failed to set up ARexx interface."},
    SetUpStep{SetUpChooserLists, "Could not create Exec list."},
    SetUpStep{AllocateFileRequester, "Could not allocate file requester."},
    SetUpStep{AllocateFontRequester, "Could not allocate font requester."},
    SetUpStep{AllocateScreenModeRequester, "Could not allocate screen mode requester."},
    SetUpStep{SAK_SetUpNotify, "Failed to set up notification system."},
    SetUpStep{[] { return MakePort(ScrNotPort); }, "Could not create user port."},
    SetUpStep{CheckxadUnFileVersion, "Failed to check xadunfile."},
    SetUpStep{CheckForjhead, "Failed to check Tools/jhead."},
    SetUpStep{CheckForjpegtran, "Failed to check Tools/jpegtran."},
    SetUpStep{CheckForFTPMount, ""},
    SetUpStep{[] {
                  GetShellTooltypes();
                  return true;
              },
              ""},
    SetUpStep{CheckFormatVersion, ""},
    SetUpStep{CheckSoundDatatypeVersion, ""},
    SetUpStep{[] { return SAK_SetupNetworkInformation() && SAK_GetNetworkInformation(); },
              "Could not create Exec list."},
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
        FreeAllTabs(1);
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
            Terminate(step.Message);
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
