#include "frame/MyProgram.h"

#include "automation/ARexx.h"
#include "content/ColumnInfo.h"
#include "frame/ApplyPreferences.h"
#include "frame/ArgumentParser.h"
#include "frame/LanguageCheck.h"
#include "frame/MainLoop.h"
#include "frame/MyProgramSupport.h"
#include "interface/Tell.h"
#include "locations/Assigns.h"
#include "locations/Devices.h"
#include "locations/DiskEvents.h"
#include "model/Prefs.h"
#include "model/PrefsLists.h"
#include "model/Program.h"
#include "platform/dos/Files.h"
#include "prefs/LoadSavePrefs.h"
#include "prefs/PrefsLists.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/StringFunctions.h"

#include <array>
#include <string>
#include <string_view>

namespace solvane {

namespace {

void DescribeMachine() {
    const application::Machine machine = application::DescribeMachine();
    gmit_MachineString = machine.Name;
    gmit_Extensions = machine.Extensions;
}

// What a first start shows. Only the default document tells of a first start, and the one in use may have
// another name: what that has filled is the user's and stays.
bool FillEmptyLists() {
    if (SAK_GenericListCount(*ToolbarList) == 0 && !RestoreDefaultToolbar()) {
        return false;
    }
    if (SAK_GenericListCount(*MasterFavoritesList) == 0 && !RestoreDefaultFavorites()) {
        return false;
    }
    return CreateColumnInfoAll();
}

// Reads the document; where there is none this is the first start of the program for this user.
bool SetUpPreferences() {
    if (!DefaultPrefs()) {
        return false;
    }
    LoadPrefs();
    if (!SAK_FileExists(DefaultPrefsFile)) {
        if (!FillEmptyLists()) {
            Tell(MSG_NO_LIST_NODE);
        }
        SavePrefs(1);
    }
    return true;
}

void TakeGivenGeometry() {
    const auto take = [](std::int32_t given, std::int32_t& setting) {
        if (given > -1) {
            setting = given;
        }
    };
    take(Win_X, Prefs.WindowX);
    take(Win_Y, Prefs.WindowY);
    take(Win_W, Prefs.WindowWidth);
    take(Win_H, Prefs.WindowHeight);
}

// What the preferences say of a start alone.
void ApplyStartPreferences() {
    if (SAK_PreferredLanguage.Empty()) {
        SAK_PreferredLanguage = Prefs.PreferredLanguage;
    }
    if (Prefs.StartIconified != 0) {
        StartIconified = 1;
    }
    TakeGivenGeometry();
}

void NameTemporaryFiles() {
    const auto name = [](const char* format) { return FormatText(format, PortNumber); };
    Temporary.SV_ArchivePreview = name("T:SV%lu_ArchivePreview");
    Temporary.SV_OS4ReadMe = name("T:SV%lu_OS4README");
    Temporary.SV_AmiReadMe = name("T:SV%lu_AMIREADME");
    Temporary.SV_MP3Pic = name("T:SV%lu_MP3Pic");
    Temporary.SV_EXIF = name("T:SV%lu_EXIF");
    Temporary.SV_jpegtran = name("T:SV%lu_jt");
    Temporary.SV_MusicBrainz = name("T:SV%lu_MB");
    Temporary.SV_MusicBrainzPreview = name("T:SV%lu_MBP");
}

bool ReadDevicesAndAssigns() {
    if (!GetDevices() || !CopyDevicesToNavDevices() || !GetAssigns()) {
        TellTerminate(MSG_NO_LIST);
        return false;
    }
    SortMasterAssignsList();
    static_cast<void>(StartDiskEvents()); // without it disks that come are seen at the next look
    return true;
}

// Everything before the first window. False ends the program.
bool StartUp(const application::StartMessage& start) {
    static_cast<void>(dos::CreateDir("ENVARC:Solvane"));
    GetPROGDIR();
    DescribeMachine();
    if (!MPS_SetUp()) {
        return false;
    }
    GetSYSDevice();
    if (!ArgumentParser(start)) {
        return false;
    }
    SAK_PreferredLanguage = SAK_StringToLower(SAK_PreferredLanguage.View());
    SetUpLanguageChangeCheck();
    if (!SetUpPreferences()) {
        return false;
    }
    ApplyStartPreferences();
    ApplyPreferences();
    if (!SetUpAsCommodity()) {
        return false;
    }
    NameTemporaryFiles();
    return ReadDevicesAndAssigns();
}

} // namespace

void MyProgram(const application::StartMessage& start) {
    if (StartUp(start)) {
        RunMainLoop();
    } else {
        done2 = 0; // a start that failed is not started again
    }
    MPS_ShutDown();
}

} // namespace solvane
