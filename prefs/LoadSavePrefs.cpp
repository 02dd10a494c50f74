#include "prefs/LoadSavePrefs.h"

#include "interface/MainLayout.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Files.h"
#include "platform/locale/Locale.h"
#include "prefs/PrefsTable.h"
#include "sak/FilenameSupport.h"
#include "sak/Format.h"
#include "sak/Requesters.h"
#include "sak/Ringhio.h"

#include <algorithm>
#include <string>
#include <utility>

namespace solvane {

namespace {

using application::Dictionary;
using application::PrefsArray;
using application::PrefsValue;

constexpr const char* WhichPrefsFile = "ENVARC:Solvane/prefs";
constexpr std::size_t LargestDocument = 4U << 20U; // bytes
constexpr std::size_t LongestName = 128;
constexpr std::uint32_t FirstTextColumn = 1; // the icon column before it and this one are always shown
constexpr std::int64_t DetailsColumns = 25;  // the icon column counted
constexpr std::int32_t IconColumnWidth = 26; // pixels, as those below
constexpr std::int64_t NarrowestColumn = 8, WidestColumn = 4096;

std::int64_t NumberAt(const PrefsArray& array, std::size_t position, std::int64_t fallback) {
    return position < array.size() ? array[position].Number().value_or(fallback) : fallback;
}

// A column of the Details view that has not been read yet.
bool IsNewColumn(std::int64_t number) {
    const auto& columns = *ShowDetailsColumnsList;
    return number >= 0 && number < DetailsColumns &&
           std::none_of(columns.begin(), columns.end(),
                        [&](const ColumnInfoNode& node) { return node.ColumnNumber == number; });
}

void LoadColumns(const Dictionary& from) {
    SAK_ClearGenericList(*ShowDetailsColumnsList);
    const PrefsArray* columns = from.Array("ShowDetailsColumns");
    for (const PrefsValue& element : columns != nullptr ? *columns : PrefsArray()) {
        const PrefsArray* values = element.Array();
        auto node = SAK_CreateGenericListNode<ColumnInfoNode>();
        if (values == nullptr || values->empty() || !node) {
            continue;
        }
        const std::int64_t number = NumberAt(*values, 0, 0);
        if (!IsNewColumn(number)) {
            continue;
        }
        node->ColumnNumber = static_cast<std::uint32_t>(number);
        node->Shown = NumberAt(*values, 1, 0) != 0 || node->ColumnNumber <= FirstTextColumn ? 1 : 0;
        node->Width = static_cast<std::int32_t>(
            std::clamp<std::int64_t>(NumberAt(*values, 2, 0), NarrowestColumn, WidestColumn));
        if (node->ColumnNumber == 0) {
            node->Width = IconColumnWidth;
        }
        SAK_AddGenericListNode(*ShowDetailsColumnsList, std::move(node));
    }
}

void LoadStartupTabs(const Dictionary& from) {
    SAK_ClearGenericList(*StartupTabsList);
    const PrefsArray* tabs = from.Array("StartupTabs");
    for (const PrefsValue& element : tabs != nullptr ? *tabs : PrefsArray()) {
        const PrefsArray* values = element.Array();
        auto node = SAK_CreateGenericListNode<TabsNode>();
        if (values == nullptr || values->empty() || !node) {
            continue;
        }
        node->Location = static_cast<LocationKind>(NumberAt(*values, 0, 0));
        const std::string* path = values->size() > 1 ? (*values)[1].String() : nullptr;
        if (path != nullptr && path->size() > Text<1024>::Limit) {
            continue; // a cut path would lead elsewhere
        }
        node->Path = path != nullptr ? *path : std::string();
        SAK_AddGenericListNode(*StartupTabsList, std::move(node));
    }
}

void SaveColumns(Dictionary& into) {
    PrefsArray columns;
    for (const ColumnInfoNode& node : *ShowDetailsColumnsList) {
        columns.push_back({PrefsArray{
            {std::int64_t{node.ColumnNumber}}, {std::int64_t{node.Shown}}, {std::int64_t{node.Width}}}});
    }
    into.Set("ShowDetailsColumns", {std::move(columns)});
}

void SaveStartupTabs(Dictionary& into) {
    PrefsArray tabs;
    for (const TabsNode& node : *StartupTabsList) {
        tabs.push_back(
            {PrefsArray{{static_cast<std::int64_t>(node.Location)}, {std::string(node.Path.View())}}});
    }
    into.Set("StartupTabs", {std::move(tabs)});
}

Dictionary DictionaryOfPrefs() {
    Dictionary dictionary;
    for (const PrefsKey& key : PrefsKeys()) {
        key.Save(Prefs, key.Key, dictionary);
    }
    SaveStartupTabs(dictionary);
    SaveColumns(dictionary);
    return dictionary;
}

// The document, or an empty dictionary. One that cannot be understood is kept beside the new one that the
// next save writes; one that cannot be read is never written over.
Dictionary ReadDocument() {
    const auto document = dos::ReadWhole(ProgramPrefsFile.View(), LargestDocument);
    if (!document) {
        if (dos::IoErr() != dos::ErrorObjectNotFound) {
            SAK_IOErr = dos::IoErr();
            QuitNoSave = 1;
            SAK_IOError(MainWindow.get(), RequesterTitle.View(), "Error loading prefs file.",
                        "DOS error message:", "_Continue");
        }
        return {};
    }
    auto dictionary = Dictionary::FromXml(*document);
    if (!dictionary) {
        const std::string keptAs = std::string(ProgramPrefsFile.View()) + ".broken";
        QuitNoSave = dos::WriteWhole(keptAs, *document) ? QuitNoSave : std::uint16_t{1};
    }
    return std::move(dictionary).value_or(Dictionary());
}

} // namespace

bool DefaultPrefs() {
    Prefs = PrefsRecord();
    Prefs.CustomDateFormat = locale::ShortDateTimeFormat();
    PrefsExist = 1;
    return true;
}

void FreePrefs() {
    Prefs = PrefsRecord();
    PrefsExist = 0;
}

bool LoadPrefs() {
    const Dictionary dictionary = ReadDocument();
    PrefsRecord defaults;
    defaults.CustomDateFormat = locale::ShortDateTimeFormat();
    for (const PrefsKey& key : PrefsKeys()) {
        key.Load(dictionary, key.Key, defaults, Prefs);
    }
    LoadStartupTabs(dictionary);
    LoadColumns(dictionary);
    RinghioMessage("Solvane", "Preferences loaded.", "FRONT", RinghioImageBuffer.View(), "");
    return true;
}

bool SavePrefs(int writeFile) {
    if (AtPreferences == 0) {
        CollectPrefs();
    }
    if (writeFile == 0) {
        return true;
    }
    if (!dos::WriteWhole(ProgramPrefsFile.View(), DictionaryOfPrefs().ToXml())) {
        SAK_IOErr = dos::IoErr();
        SAK_IOError(MainWindow.get(), RequesterTitle.View(), "Error saving prefs file.",
                    "DOS error message:", "_Continue");
        return false;
    }
    SaveWhichPrefs();
    RinghioMessage("Solvane", "Preferences saved.", "FRONT", RinghioImageBuffer.View(), "");
    return true;
}

void CollectPrefs() {
    if (!MainWindow || !MainWindow->IsOpen() || AtPreferences != 0 || Prefs.AutosaveWindowPosition == 0) {
        return;
    }
    const intuition::Box box = MainWindow->Geometry();
    Prefs.WindowX = box.Left;
    Prefs.WindowY = box.Top;
    Prefs.WindowWidth = box.Width;
    Prefs.WindowHeight = box.Height;
}

void LoadWhichPrefs() {
    const auto text = dos::ReadWhole(WhichPrefsFile, LongestName);
    if (!text) {
        return;
    }
    const std::size_t start = text->find_first_not_of('\n');
    if (start != std::string::npos) {
        const std::string name = text->substr(start, text->find('\n', start) - start);
        ProgramPrefsFile = FormatText("ENVARC:%s/%s", "Solvane", name);
    }
}

void SaveWhichPrefs() {
    Text<1024> drawer;
    Text<128> file;
    SAK_SplitFilename(ProgramPrefsFile.View(), drawer, file);
    static_cast<void>(dos::WriteWhole(WhichPrefsFile, file.View())); // failure is silent, as intended
}

void LoadApplicationPrefs() {}

void RestoreDefaultToolbar() {}

void RestoreDefaultFavorites() {}

} // namespace solvane
