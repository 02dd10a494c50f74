// Process-wide state of one instance: who it is, how it was started, and what its main loop is to do next.
// frame/ writes it; feature routines may set the flags that the comments name.
#pragma once

#include "model/Content.h"
#include "model/Tabs.h"
#include "platform/intuition/Gadget.h"
#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>

namespace solvane {

inline constexpr std::uint32_t MaximumInstances = 50;

// JumpToARexxCmd: the command that the loop is to finish, by the number that it has for scripts.
enum ARexxJump : std::int32_t {
    JumpActivate = 1,
    JumpIconify = 5,
    JumpUniconify = 6,
    JumpParent = 9,
    JumpCloseTab = 68, // the window goes with its last tab
    JumpChangePath = 84,
    JumpLoadPrefs = 97,
    JumpToNewScreen = 107,
    NoJump = 999, // nothing is waiting
};

// An ARexx script that the user can pick.
struct ARexxNode : ListNode {
    Text<128> ScriptName;
    Text<1024> ScriptPath;
};

// --- State: identity, written once at start ---

extern std::uint16_t MultipleCopies; // 1: more than one instance may run; nothing changes it
extern std::uint32_t PortNumber;     // 1 to MaximumInstances
extern Text<50> PortBuffer;          // name of the public port
extern Text<50> ARexxPortBuffer;     // name of the ARexx port
extern Text<128> AppIconName;        // PortBuffer without ".port"
extern Text<128> InstanceBaseName;   // the same
extern Text<128> ProgramName;        // the name the process was started under
extern Text<1024> ProgramDir;        // path of "PROGDIR:" by volume
extern Text<1024> ProgramComplete; // ProgramDir joined with ProgramName: what a new instance is started from
extern Text<1024> RinghioImageBuffer; // picture of desktop notices
extern Text<128> SYSDevice;           // device of "SYS:"
extern Text<30> gmit_MachineString;
extern Text<100> gmit_Extensions;
extern Text<10> VERSION_STRING;
extern Text<15> DATE_STRING;

// --- State: the start ---

extern std::uint16_t FromShell;
extern std::int32_t Win_X, Win_Y, Win_W, Win_H; // -1: not given
extern std::int32_t Icon_X, Icon_Y;             // -2: not given
extern Text<140> DefaultPubScreenID;
extern Text<50> SAK_PreferredLanguage;
extern Text<128> LanguageName;
extern std::uint16_t FirstRun;      // the window has not been opened yet
extern std::uint16_t SecondRun;     // the window has been closed and is opened anew; never cleared
extern std::uint16_t LoadImages;    // bitmaps must be loaded before the next window opening
extern std::uint16_t PathSpecified; // CommandLineTabsList holds locations given by the user
extern std::uint16_t ReopenTabs;    // CommandLineTabsList holds the tabs of a window that is being rebuilt
extern std::uint16_t StartIconified;
extern std::unique_ptr<GenericList<TabsNode>> CommandLineTabsList; // places to open, or tabs to reopen
extern std::unique_ptr<GenericList<TabsNode>> StartupTabsList;     // place and path only
extern std::uint32_t Offset; // position of the active tab among those to reopen
extern std::unique_ptr<GenericList<ARexxNode>> ARexxList;
extern Text<256> ProgramPrefsFile; // the preferences document in use
extern Text<128> ShellWindowArg;
extern Text<10> ShellStackArg;
extern Text<128> ShellFromArg;
extern std::uint32_t xadUnFileVersion;
extern std::uint16_t FoundFTPMount, FoundFTPMountAssign;
extern std::uint16_t EnhancerFormat;
extern std::uint16_t FoundEnhancerSoundDatatype;

// Names of the instance's temporary files.
struct TemporaryNames {
    Text<128> SV_ArchivePreview, SV_OS4ReadMe, SV_AmiReadMe, SV_MP3Pic, SV_EXIF, SV_jpegtran, SV_MusicBrainz,
        SV_MusicBrainzPreview;
};
extern TemporaryNames Temporary;

// --- State: the loop ---

extern std::uint32_t Signals;     // what the last Wait returned
extern std::uint32_t SignalsMask; // the window's signal, read anew each round
extern std::uint16_t Code;        // of the last input event
extern std::uint16_t Qualifier;   // keyboard qualifiers at its moment
extern Text<32> KeyText;          // what a key types, UTF-8; empty for commands and for what is no key
extern std::uint16_t done;        // leave the loop, through the quit confirmation; any routine may set it
extern std::uint16_t done2; // start a fresh instance at the end; also lifts the commodity's rule at start
extern std::uint16_t QuitNoSave; // do not save the preferences at the end
extern std::uint16_t Iconified;
extern std::uint16_t WindowClosed;
extern std::uint16_t ScrNotChange;  // the window is being closed for a rebuild and comes back
extern std::uint16_t AtPreferences; // the Preferences editor is the cause of the rebuild
extern std::uint16_t ReloadPrefs;   // the record is being loaded anew: the window does not stand for it
extern std::uint16_t GoFullScreen;  // the window fills the screen and does not stand for its settings
extern intuition::Box BoxBeforeFullScreen; // valid while GoFullScreen is set
extern std::uint16_t ClearPreviewWhenUniconfy;
extern std::int32_t JumpToARexxCmd; // an ARexxJump: what a handler left for the loop
extern Text<1024> JumpPath;         // where JumpChangePath is to lead
extern std::uint16_t ClipExists;    // entries have been cut or copied; written by what another instance tells
extern std::uint32_t JumpToCount;   // type-ahead: ticks since the last key
extern std::uint16_t SameJumpTo;
extern std::uint16_t AnimPlaying, SoundPlaying;

// Whether one of these keys, values of qualifier, was held at the last event.
[[nodiscard]] inline bool IsHeld(unsigned keys) {
    return (Qualifier & keys) != 0;
}

} // namespace solvane
