#include "prefs/LoadSavePrefs.h"

#include "interface/MainLayout.h"
#include "interface/Panes.h"
#include "interface/Ringhio.h"
#include "interface/Tell.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/locale/Locale.h"
#include "prefs/PrefsLists.h"
#include "prefs/PrefsTable.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

namespace solvane {

namespace {

using application::Dictionary;

constexpr const char* WhichPrefsFile = "ENVARC:Solvane/prefs";
constexpr const char* ApplicationPrefsFile = "ENVARC:Solvane/application";
constexpr std::size_t LargestDocument = 4U << 20U; // bytes
constexpr std::size_t LargestSmallFile = 4096;     // bytes
constexpr std::size_t LongestNameLine = 127;       // bytes
constexpr std::size_t LongestFlagLine = 4;         // bytes
constexpr int MostCopies = 99;                     // of broken documents
constexpr int MostAttempts = 10;                   // at saving a document that others save, too

// The document that could neither be understood nor kept elsewhere: no save replaces it. Mostly empty.
Text<256> StandingDocument;

// The defaults of this moment: some are the locale's.
PrefsRecord Defaults() {
    PrefsRecord defaults;
    defaults.CustomDateFormat = locale::ShortDateTimeFormat();
    defaults.DefaultOpenAtName = SAK_LocaleString(MSG_COMPUTER);
    return defaults;
}

bool IsMissing(long error) {
    return error == dos::ErrorObjectNotFound || error == dos::ErrorDirNotFound;
}

void TellLoadingFailed() {
    TellDosError(MSG_NO_PREFS_LOAD, SAK_IOErr);
}

// Keeps the bytes of a document that cannot be understood in a file beside it; copies of earlier ones stay.
// False with IoErr.
bool KeepCopy(const std::string& document) {
    for (int copy = 1; copy <= MostCopies; ++copy) {
        const std::string name =
            std::string(ProgramPrefsFile.View()) + ".broken" + (copy > 1 ? std::to_string(copy) : "");
        const auto there = dos::ReadWhole(name, LargestDocument);
        if (there == document) {
            return true;
        }
        if (!there && IsMissing(dos::IoErr())) {
            return dos::WriteWhole(name, document);
        }
    }
    dos::SetIoErr(dos::ErrorObjectExists);
    return false;
}

// The reason is in IoErr. The user must hear of it: what he sets from now on is not kept.
void LetDocumentStand() {
    SAK_IOErr = dos::IoErr();
    StandingDocument = ProgramPrefsFile;
    QuitNoSave = 1;
    TellLoadingFailed();
}

// A document that was mended meanwhile is saved at the end again.
void ForgetStandingDocument() {
    if (!StandingDocument.Empty()) {
        StandingDocument.Clear();
        QuitNoSave = 0;
    }
}

// The document, or nothing for one that is missing or cannot be read.
std::string ReadDocument() {
    ForgetStandingDocument();
    const auto document = dos::ReadWhole(ProgramPrefsFile.View(), LargestDocument);
    if (!document) {
        if (!IsMissing(dos::IoErr())) {
            LetDocumentStand();
        }
    }
    return document.value_or(std::string());
}

// The next save replaces what was not taken over.
void KeepWhatWasNotTaken(const std::string& document) {
    if (!document.empty() && !KeepCopy(document)) {
        LetDocumentStand();
    }
}

// How many settings were passed over.
std::size_t LoadSettings(const Dictionary& dictionary) {
    const PrefsRecord defaults = Defaults();
    std::size_t passed = 0;
    for (const PrefsKey& key : PrefsKeys()) {
        key.Load(dictionary, key.Key, defaults, Prefs);
        passed += IsPassedOver(key, dictionary) ? 1 : 0;
    }
    NewOpenOnOwnScreen = Prefs.OpenOnOwnScreen != 0 ? 1 : 0;
    SoundVolume = Prefs.SoundVolume;
    return passed;
}

// How many elements were passed over, and values that are no list; nothing when a record could not be made,
// which is told.
std::optional<std::size_t> LoadLists(const Dictionary& dictionary) {
    std::size_t passed = 0;
    for (const PrefsList& list : PrefsLists()) {
        const application::PrefsArray* array = dictionary.Array(list.Key);
        const auto ofList = list.Load(array);
        if (!ofList) {
            Tell(MSG_NO_LIST_NODE, RequesterImage::Error);
            SAK_IOErr = dos::ErrorNoFreeStore;
            TellLoadingFailed();
            return std::nullopt;
        }
        passed += *ofList + (array == nullptr && dictionary.Has(list.Key) ? 1 : 0);
    }
    return passed;
}

std::string MakeDocument() {
    Dictionary dictionary;
    for (const PrefsKey& key : PrefsKeys()) {
        key.Save(Prefs, key.Key, dictionary);
    }
    for (const PrefsList& list : PrefsLists()) {
        dictionary.Set(list.Key, {list.Save()});
    }
    return dictionary.ToXml();
}

// Another instance may put its document in the place of the old one while this one is at work on it.
bool Replace(const std::string& document) {
    bool done = false;
    for (int attempt = 0; !done && attempt < MostAttempts; ++attempt) {
        done = dos::WriteWhole(ProgramPrefsFile.View(), document);
        if (!done && !IsMissing(dos::IoErr()) && dos::IoErr() != dos::ErrorObjectExists) {
            break;
        }
    }
    return done;
}

// False with IoErr. What could not be read again is not written.
bool WriteDocument() {
    if (!StandingDocument.Empty() && StandingDocument.SameBytes(ProgramPrefsFile.View())) {
        dos::SetIoErr(dos::ErrorObjectExists);
        return false;
    }
    const std::string document = MakeDocument();
    if (document.size() > LargestDocument) {
        dos::SetIoErr(dos::ErrorObjectTooLarge);
        return false;
    }
    return Replace(document);
}

// The first line that is not empty, cut at limit bytes; empty when there is none.
std::string FirstLine(const char* file, std::size_t limit) {
    const std::string text = dos::ReadWhole(file, LargestSmallFile).value_or(std::string());
    const std::size_t start = text.find_first_not_of('\n');
    if (start == std::string::npos) {
        return {};
    }
    return text.substr(start, std::min(text.find('\n', start) - start, limit));
}

// A small file that says the same already is left alone. Failure is silent, which is intended.
void WriteSmallFile(const char* file, std::string_view text) {
    if (dos::ReadWhole(file, LargestSmallFile) != text) {
        static_cast<void>(dos::WriteWhole(file, text));
    }
}

} // namespace

bool DefaultPrefs() {
    Prefs = Defaults();
    PrefsExist = 1;
    return true;
}

void FreePrefs() {
    Prefs = PrefsRecord();
    PrefsExist = 0;
    StandingDocument.Clear();
}

bool LoadPrefs() {
    const std::string document = ReadDocument();
    const auto understood = Dictionary::FromXml(document);
    const Dictionary dictionary = understood.value_or(Dictionary());
    const std::size_t settings = LoadSettings(dictionary);
    const auto passed = LoadLists(dictionary);
    if (!passed) {
        return false;
    }
    if (!understood || settings + *passed > 0) {
        KeepWhatWasNotTaken(document);
    }
    RinghioMessage("Solvane", SAK_LocaleString(MSG_PREFS_LOADED), "FRONT", RinghioImageBuffer.View(), "");
    return true;
}

bool SavePrefs(int writeFile) {
    if (writeFile != 0) {
        SaveApplicationPrefs();
    }
    if (AtPreferences == 0) {
        CollectPrefs();
    }
    if (writeFile == 0) {
        return true;
    }
    if (!WriteDocument()) {
        TellDosError(MSG_NO_PREFS_SAVE);
        return false;
    }
    SaveWhichPrefs();
    RinghioMessage("Solvane", SAK_LocaleString(MSG_PREFS_SAVED), "FRONT", RinghioImageBuffer.View(), "");
    return true;
}

void TakeBackQuitNoSave() {
    QuitNoSave = StandingDocument.Empty() ? 0 : 1;
}

void CollectPrefs() {
    if (!IsWindowOpen() || GoFullScreen != 0 || ReloadPrefs != 0) {
        return;
    }
    CollectPaneWeights();
    if (AtPreferences == 0 && Prefs.AutosaveWindowPosition != 0) {
        const intuition::Box box = MainWindow->Geometry();
        Prefs.WindowX = box.Left;
        Prefs.WindowY = box.Top;
        Prefs.WindowWidth = box.Width;
        Prefs.WindowHeight = box.Height;
    }
}

void SetDateFormatInForce() {
    switch (Prefs.DateFormat) {
    case 0:
        Prefs.EffectiveDateFormat = "%d-%b-%y %T";
        break;
    case 2:
        Prefs.EffectiveDateFormat = Prefs.CustomDateFormat;
        break;
    default:
        Prefs.EffectiveDateFormat = locale::ShortDateTimeFormat();
        break;
    }
}

void LoadWhichPrefs() {
    const std::string name = FirstLine(WhichPrefsFile, LongestNameLine);
    if (name.empty() || name.find_first_of(":/") != std::string::npos) {
        return; // a document lives in the program's own drawer
    }
    ProgramPrefsFile = FormatText("ENVARC:%s/%s", "Solvane", name);
}

void SaveWhichPrefs() {
    Text<1024> drawer;
    Text<128> file;
    SAK_SplitFilename(ProgramPrefsFile.View(), drawer, file);
    WriteSmallFile(WhichPrefsFile, file.View());
}

void LoadApplicationPrefs() {
    const std::string line = FirstLine(ApplicationPrefsFile, LongestFlagLine);
    if (line.empty()) {
        return;
    }
    appShowInAmiDock = 0; // unless the line begins with another number
    std::from_chars(line.data(), line.data() + line.size(), appShowInAmiDock);
}

void SaveApplicationPrefs() {
    WriteSmallFile(ApplicationPrefsFile,
                   FormatText("%lu\n", static_cast<std::uint32_t>(Prefs.ShowInAmiDock != 0 ? 1 : 0)));
}

} // namespace solvane
