#include "model/Program.h"

namespace solvane {

std::uint16_t MultipleCopies = 1;
std::uint32_t PortNumber = 1;
Text<50> PortBuffer;
Text<50> ARexxPortBuffer;
Text<128> AppIconName;
Text<128> InstanceBaseName;
Text<128> ProgramName;
Text<1024> ProgramDir;
Text<1024> ProgramComplete;
Text<1024> RinghioImageBuffer;
Text<128> SYSDevice;
Text<30> gmit_MachineString;
Text<100> gmit_Extensions;
Text<10> VERSION_STRING;
Text<15> DATE_STRING;

std::uint16_t FromShell = 0;
std::int32_t Win_X = -1;
std::int32_t Win_Y = -1;
std::int32_t Win_W = -1;
std::int32_t Win_H = -1;
std::int32_t Icon_X = -2;
std::int32_t Icon_Y = -2;
Text<140> DefaultPubScreenID;
Text<50> SAK_PreferredLanguage;
Text<128> LanguageName;
std::uint16_t FirstRun = 1;
std::uint16_t SecondRun = 0;
std::uint16_t LoadImages = 1;
std::uint16_t PathSpecified = 0;
std::uint16_t ReopenTabs = 0;
std::uint16_t StartIconified = 0;
std::unique_ptr<GenericList<TabsNode>> CommandLineTabsList;
std::unique_ptr<GenericList<TabsNode>> StartupTabsList;
std::uint32_t Offset = 0;
std::unique_ptr<GenericList<ARexxNode>> ARexxList;
Text<256> ProgramPrefsFile;
Text<128> ShellWindowArg;
Text<10> ShellStackArg;
Text<128> ShellFromArg;
std::uint32_t xadUnFileVersion = 0;
std::uint16_t FoundFTPMount = 0;
std::uint16_t FoundFTPMountAssign = 0;
std::uint16_t EnhancerFormat = 0;
std::uint16_t FoundEnhancerSoundDatatype = 0;
TemporaryNames Temporary;

std::uint32_t Signals = 0;
std::uint32_t SignalsMask = 0;
std::uint16_t Code = 0;
std::uint16_t Qualifier = 0;
Text<32> KeyText;
std::uint16_t done = 0;
std::uint16_t done2 = 0;
std::uint16_t QuitNoSave = 0;
std::uint16_t Iconified = 0;
std::uint16_t WindowClosed = 0;
std::uint16_t ScrNotChange = 0;
std::uint16_t AtPreferences = 0;
std::uint16_t ReloadPrefs = 0;
std::uint16_t GoFullScreen = 0;
intuition::Box BoxBeforeFullScreen;
std::uint16_t ClearPreviewWhenUniconfy = 0;
std::int32_t JumpToARexxCmd = NoJump;
Text<1024> JumpPath;
std::uint16_t ClipExists = 0;
std::uint32_t JumpToCount = 0;
std::uint16_t SameJumpTo = 0;
std::uint16_t AnimPlaying = 0;
std::uint16_t SoundPlaying = 0;

} // namespace solvane
