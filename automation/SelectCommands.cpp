#include "automation/SelectCommands.h"

#include "content/Selection.h"
#include "content/Status.h"
#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "locations/PlaceFigures.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/Patterns.h"
#include "platform/intuition/Events.h"
#include "platform/intuition/FormRequesters.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <optional>
#include <string>

namespace solvane {

namespace {

std::uint16_t PAT_CaseSensitive = 0; // whether the last pattern minded case; the requester begins with it

constexpr std::uint32_t Groups = 9;

class BlockedWindow {
public:
    BlockedWindow() { BlockMainWindow(1); }
    ~BlockedWindow() { BlockMainWindow(0); }
    BlockedWindow(const BlockedWindow&) = delete;
    BlockedWindow& operator=(const BlockedWindow&) = delete;
};

bool IsListOfPlaces() {
    return LBLocation < LocationKind::OS4Depot && LBLocation != LocationKind::Workbench;
}

bool HasNames() {
    return LBLocation == LocationKind::Workbench || LBLocation == LocationKind::OS4Depot ||
           LBLocation == LocationKind::Aminet || LBLocation == LocationKind::Archive ||
           LBLocation == LocationKind::Drawer;
}

bool HasTypes() {
    return LBLocation == LocationKind::Workbench || LBLocation == LocationKind::SearchResults ||
           LBLocation == LocationKind::DuplicateFiles || LBLocation == LocationKind::Drawer;
}

// A drive without a medium is selected by itself alone.
bool IsAmongAll(const ContentNode& node) {
    const DevicesNode* device = LBLocation == LocationKind::Computer ? DeviceOf(node) : nullptr;
    return device == nullptr || device->Mounted != 0;
}

// Puts rows and records in step after the selection has changed, and shows it.
void TellChange() {
    SelectContentListItems();
    if (!IsListOfPlaces()) {
        RefreshBytes();
    }
    TellContentSelection();
}

// The volumes of the Workbench have neither a type nor a name of their own.
bool IsVolume(const ContentNode& node) {
    return DeviceOf(node) != nullptr;
}

// Flags what the predicate picks among the entries with a row. False when there is none.
template <class Predicate>
bool FlagEntries(Predicate picks) {
    bool found = false;
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && picks(*row.Record)) {
            row.Record->Selected = 1;
            found = true;
        }
    }
    return found;
}

void ShowGrownSelection() {
    HighlightContentListItems();
    RefreshBytes();
    TellContentSelection();
}

void TellBadPattern() {
    const bool noRoom = dos::IoErr() == dos::ErrorNoFreeStore;
    Tell(noRoom ? MSG_NO_MEMORY : MSG_INVALID_PATTERN);
}

// Asks for a pattern; nothing when the user has none to give.
std::optional<std::string> PatternReq() {
    const intuition::FormAnswer answer = intuition::AskForm(
        MainWindow.get(), {.Title = std::string(RequesterTitle.View()),
                           .Fields = {{.Label = std::string(SAK_LocaleString(MSG_PATTERN_TITLE)),
                                       .Text = "#?",
                                       .MaximumBytes = Text<1024>::Limit}},
                           .Checks = {{.Label = std::string(SAK_LocaleString(MSG_CASE_SENSITIVE)),
                                       .Set = PAT_CaseSensitive != 0}},
                           .Gadgets = {std::string(SAK_LocaleString(MSG_OK_GAD)),
                                       std::string(SAK_LocaleString(MSG_CANCEL_GAD))}});
    if (answer.Gadget < 1 || answer.Texts.empty()) {
        return std::nullopt;
    }
    PAT_CaseSensitive = !answer.Checks.empty() && answer.Checks.front() ? 1 : 0;
    return answer.Texts.front();
}

} // namespace

void SelectAll() {
    if (Objects.ContentList == nullptr) {
        return;
    }
    SetPreviewPaneNone();
    const BlockedWindow blocked;
    if (LBLocation == LocationKind::Computer) {
        ClearSelectedFiles();
        FlagEntries(IsAmongAll);
        HighlightContentListItems();
    } else {
        Objects.ContentList->SelectAll();
    }
    TellChange();
}

void SelectNone() {
    SetPreviewPaneNone();
    const BlockedWindow blocked;
    ClearSelectedFiles();
    TellChange();
}

void ToggleSelection() {
    if (Objects.ContentList == nullptr) {
        return;
    }
    SetPreviewPaneNone();
    const BlockedWindow blocked;
    SelectContentListItems();
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && IsAmongAll(*row.Record)) {
            row.Record->Selected = row.Record->Selected == 0 ? 1 : 0;
        }
    }
    Objects.ContentList->ClearSelection();
    HighlightContentListItems();
    TellChange();
}

void SelectByType(std::uint32_t group) {
    if (!HasTypes() || group >= Groups) {
        return;
    }
    SetPreviewPaneNone();
    const BlockedWindow blocked;
    if (IsHeld(intuition::qualifier::AnyShift)) {
        SelectContentListItems();
    } else {
        ClearSelectedFiles();
    }
    const bool found = FlagEntries([group](const ContentNode& node) {
        return node.DatatypeGroupValue == group && !IsVolume(node) && !SAK_IsInfoFile(node.EntryName);
    });
    if (found) {
        ShowGrownSelection();
        return;
    }
    RefreshBytes();
    TellPlace();
}

void Pattern(std::string_view text, bool caseSensitive) {
    if (!HasNames()) {
        return;
    }
    const BlockedWindow blocked;
    SelectContentListItems();
    std::string wanted(text);
    if (text.empty()) {
        const auto typed = PatternReq();
        if (!typed) {
            return;
        }
        wanted = *typed;
    } else {
        PAT_CaseSensitive = caseSensitive ? 1 : 0;
    }
    const auto rule = PAT_CaseSensitive != 0 ? dos::PatternCase::Respect : dos::PatternCase::Ignore;
    const auto pattern = dos::Pattern::Parse(wanted, rule, dos::PatternStar::Anything);
    if (!pattern) {
        TellBadPattern();
        return;
    }
    if (FlagEntries([&pattern](const ContentNode& node) {
            return !IsVolume(node) && pattern->Matches(node.EntryName.View());
        })) {
        ShowGrownSelection();
    }
}

void SelectEntry(std::string_view name, EntrySort sort) {
    if (!HasNames()) {
        return;
    }
    const BlockedWindow blocked;
    SelectContentListItems();
    ContentNode* found = nullptr;
    for (const ListRow& row : lblist2) {
        ContentNode* entry = row.Record;
        if (entry == nullptr || IsVolume(*entry) ||
            IsDrawerKind(entry->ObjectKind) != (sort == EntrySort::Drawer)) {
            continue;
        }
        if (entry->EntryName.SameBytes(name)) {
            found = entry;
            break;
        }
        if (found == nullptr && entry->EntryName == name) {
            found = entry;
        }
    }
    if (found != nullptr) {
        found->Selected = 1;
        ShowGrownSelection();
    }
}

} // namespace solvane
