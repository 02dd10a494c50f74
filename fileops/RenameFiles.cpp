#include "fileops/RenameFiles.h"

#include "content/BuildLists.h"
#include "content/Selection.h"
#include "content/SortLists.h"
#include "content/Status.h"
#include "interface/MainLayout.h"
#include "interface/Ringhio.h"
#include "interface/Tell.h"
#include "locations/PlaceFigures.h"
#include "locations/RescanTabs.h"
#include "media/Preview.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "model/Tabs.h"
#include "platform/dos/Changes.h"
#include "platform/dos/Errors.h"
#include "platform/intuition/FormRequesters.h"
#include "sak/FilenameSupport.h"
#include "sak/Locale.h"
#include "sak/Messages.h"
#include "sak/Notify.h"
#include "sak/Numbers.h"
#include "sak/Requesters.h"

#include <algorithm>
#include <optional>
#include <string>

namespace solvane {

namespace {

void TellFailure(long error) {
    SAK_IOErr = error;
    SAK_IOError(MainWindow.get(), RequesterTitle, {}, SAK_LocaleString(MSG_DOS_ERROR),
                SAK_LocaleString(MSG_CONTINUE_ABORT_GAD));
}

// Whether the new name is one, and not a path that leads to another drawer.
bool IsPlainName(std::string_view name) {
    return !name.empty() && name.size() <= Text<128>::Limit && name.find_first_of(":/") == name.npos;
}

// Drawers of a multi-assign may each have an object of that name. A path reaches the first alone, so that the
// other one would be renamed in its place.
bool HasTwin(const ContentNode& node) {
    return std::ranges::any_of(*ContentList, [&node](const ContentNode& other) {
        return &other != &node && other.EntryName.SameBytes(node.EntryName);
    });
}

// Renames on disk and in the record. A link is renamed itself: its record's path is what it leads to.
bool RenameEntry(ContentNode& node, std::string_view newName) {
    Text<1024> from, to;
    if (!SAK_JoinFilename(from, CurrentPath, node.EntryName) || !SAK_JoinFilename(to, CurrentPath, newName) ||
        !dos::Rename(from.View(), to.View())) {
        TellFailure(dos::IoErr());
        return false;
    }
    Changes = SAK_NotifyStarted != 0 ? 1 : 0; // the notice that comes of it is swallowed
    node.EntryName = newName;
    node.EntryDisplayName = newName;
    if (!IsLinkKind(node.ObjectKind)) {
        node.EntryPath = to;
    }
    return true;
}

// The icon goes where its owner went; one that the new name has already stays as it is.
void RenameIcon(std::string_view oldName, std::string_view newName) {
    const std::string oldIcon = std::string(oldName) + ".info";
    const std::string newIcon = std::string(newName) + ".info";
    ContentNode* icon = FindContentNode(oldIcon, static_cast<std::uint32_t>(EntryKind::File));
    Text<1024> taken;
    if (icon == nullptr || HasTwin(*icon) || newIcon.size() > Text<128>::Limit ||
        !SAK_JoinFilename(taken, CurrentPath, newIcon) || SAK_FileExists(taken)) {
        return;
    }
    if (RenameEntry(*icon, newIcon)) {
        icon->Selected = 0;
    }
}

// Asks until the name is one that the entry could have; nothing when the user wants none. The same name in
// another case is always one.
std::optional<Text<128>> RenameFilesReq(EntryKind kind, const Text<128>& oldName) {
    intuition::FormSpec form{.Title = std::string(RequesterTitle.View()),
                             .Fields = {{.Label = std::string(SAK_LocaleString(MSG_NEW_NAME)),
                                         .Text = std::string(oldName.View()),
                                         .MaximumBytes = Text<128>::Limit,
                                         .Forbidden = ":/"}},
                             .Gadgets = {std::string(SAK_LocaleString(MSG_OK_GAD)),
                                         std::string(SAK_LocaleString(MSG_SKIP_GAD)),
                                         std::string(SAK_LocaleString(MSG_CANCEL_GAD))}};
    for (;;) {
        const intuition::FormAnswer answer = intuition::AskForm(MainWindow.get(), form);
        if (answer.Gadget != 1 || answer.Texts.empty()) {
            return std::nullopt;
        }
        const Text<128> name = answer.Texts.front();
        const bool isTaken = !(name == oldName) && NameIsTaken(kind, name);
        if (!name.Empty() && !isTaken) {
            return name;
        }
        Tell(isTaken ? MSG_FILE_EXISTS : MSG_VALUE_EMPTY);
        form.Fields.front().Text = answer.Texts.front();
    }
}

void ShowRenamed() {
    RinghioMessage(RequesterTitle, FormatMessage(MSG_ITEMS_RENAMED, SAK_LocalizeNumber(1)), "FRONT",
                   RinghioImageBuffer, {});
    NoteTopRow();
    FreeContentRows();
    SortContentList(Prefs.ContentSortDirection);
    BuildContentList();
    HighlightContentListItems();
    RefreshBytes();
    TellContentSelection();
}

} // namespace

bool RenameFiles(std::string_view oldName, std::string_view newName, ShowAnew show) {
    if (LBLocation != LocationKind::Drawer || oldName.empty() || newName.empty()) {
        return false;
    }
    ContentNode* node = FindContentNode(oldName, AnyKind);
    if (node == nullptr) {
        return false;
    }
    if (!IsPlainName(newName)) {
        TellFailure(dos::ErrorInvalidComponentName);
        return false;
    }
    if (HasTwin(*node)) {
        TellFailure(dos::ErrorObjectExists);
        return false;
    }
    if (!RenameEntry(*node, newName)) {
        return false;
    }
    SelectContentListItems();
    if (Prefs.ProcessInfoFiles != 0 && !SAK_IsInfoFile(oldName)) {
        RenameIcon(oldName, newName);
    }
    SetRescanAllTabsByPath(CurrentPath, ActiveTab != nullptr ? ActiveTab->TabNumber : 0);
    if (show == ShowAnew::Yes) {
        node->Selected = 0;
        ShowRenamed();
    }
    return true;
}

void RenameSelectedEntry() {
    SelectContentListItems();
    const ContentNode* node = LBLocation == LocationKind::Drawer ? OnlySelectedEntry() : nullptr;
    if (node == nullptr) {
        return;
    }
    const Text<128> oldName = node->EntryName;
    const auto newName = RenameFilesReq(node->ObjectKind, oldName);
    if (newName && !newName->SameBytes(oldName.View())) {
        SetPreviewPaneNone(); // it lets go of the file
        RenameFiles(oldName, *newName);
    }
}

bool NameIsTaken(EntryKind kind, const Text<128>& name) {
    Text<1024> path;
    if (name.View().find_first_of(":/") != std::string_view::npos ||
        !SAK_JoinFilename(path, CurrentPath, name)) {
        return false;
    }
    return IsDrawerKind(kind) ? SAK_DrawerExists(path) : SAK_FileExists(path);
}

} // namespace solvane
