#include "automation/OpenEntries.h"

#include "content/Selection.h"
#include "interface/MainLayout.h"
#include "interface/Tell.h"
#include "locations/Navigation.h"
#include "locations/OpenTabs.h"
#include "model/Content.h"
#include "model/Prefs.h"
#include "model/Program.h"
#include "platform/dos/Errors.h"
#include "platform/dos/ReadArgs.h"
#include "platform/dos/System.h"
#include "platform/intuition/Events.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <string>
#include <vector>

namespace solvane {

std::uint16_t OpenArchiveInNewTab = 0;

namespace {

namespace qualifier = intuition::qualifier;

constexpr std::size_t MostOpenedUnasked = 20;

// Asks once before so many are opened that a slip of the hand would fill the screen.
bool MayOpen(std::size_t entries) {
    return entries <= MostOpenedUnasked ||
           SAK_EasyRequest(MainWindow.get(), RequesterTitle, RequesterImage::Question,
                           FormatMessage(MSG_OPEN_MANY, entries), SAK_LocaleString(MSG_OPEN_CANCEL_GAD)) == 1;
}

std::vector<Text<1024>> SelectedPaths(bool ofDrawers) {
    std::vector<Text<1024>> paths;
    for (const ListRow& row : lblist2) {
        if (row.Record != nullptr && row.Record->Selected != 0 &&
            IsDrawerKind(row.Record->ObjectKind) == ofDrawers) {
            paths.push_back(row.Record->EntryPath);
        }
    }
    return paths;
}

// Opens all selected rows elsewhere when there are several and the keys want that.
bool OpenedSeveralElsewhere() {
    if (NumSelected < 2 || !IsHeld(qualifier::AnyAlt | qualifier::Control)) {
        return false;
    }
    if (IsHeld(qualifier::AnyAlt)) {
        OpenSelectedInWindows();
    } else {
        OpenSelectedInTabs();
    }
    return true;
}

// A list of places: several at once open only elsewhere.
void OpenPlaceRow(const ContentNode& node) {
    const bool isOfSystem = LBLocation == LocationKind::Computer || LBLocation == LocationKind::Assigns;
    const bool refuses = NumSelected > 1 && !(isOfSystem && Prefs.PersistentSelect != 0);
    if (OpenedSeveralElsewhere()) {
        return;
    }
    if (!refuses || IsHeld(qualifier::AnyAlt | qualifier::Control)) {
        OpenEntry(node);
    }
}

void OpenFile(const Text<1024>& path) {
    if (path.View() == PathTooLong) {
        Tell(MSG_PATH_TOO_LONG);
        return;
    }
    HandleDoubleClick(dos::QuoteArgument(path.View()));
}

// The paths are copied first: a question that a program raises may outlive the records.
void OpenSelectedFiles() {
    const std::vector<Text<1024>> paths = SelectedPaths(false);
    if (!MayOpen(paths.size())) {
        return;
    }
    for (const Text<1024>& path : paths) {
        OpenFile(path);
    }
}

void OpenFileRow(const ContentNode& node, OpenWhich files) {
    OpenArchiveInNewTab = IsHeld(qualifier::Control) ? 1 : 0;
    if (files == OpenWhich::Selected && NumSelected > 1) {
        OpenSelectedFiles();
    } else {
        OpenFile(Text<1024>(node.EntryPath));
    }
}

void OpenEntryRow(const ContentNode& node, OpenWhich files) {
    if (!IsDrawerKind(node.ObjectKind)) {
        OpenFileRow(node, files);
    } else if (!OpenedSeveralElsewhere()) {
        OpenEntry(node);
    }
}

// False, with the reason in IoErr, when nothing opens what the argument names.
bool RunOnWorkbench(std::string_view argument) {
    dos::SystemJob job;
    return dos::StartSystem("WBRun " + std::string(argument), {}, &job) == 0 && job.ReturnCode() == 0;
}

} // namespace

void OpenRow(std::size_t row) {
    SelectContentListItems();
    if (row < lblist2.size() && lblist2[row].Record != nullptr) {
        OpenRecord(*lblist2[row].Record,
                   IsHeld(qualifier::AnyShift) ? OpenWhich::Selected : OpenWhich::ThisOne);
    }
}

void OpenSelectedRows() {
    SelectContentListItems();
    if (Objects.ContentList == nullptr || NumSelected == 0) {
        return;
    }
    const std::size_t marked = Objects.ContentList->Current();
    const std::size_t row =
        Objects.ContentList->IsSelected(marked) ? marked : Objects.ContentList->SelectedRows().front();
    OpenRecord(*lblist2[row].Record, OpenWhich::Selected);
}

void OpenSelectedInTabs() {
    SelectContentListItems();
    if (MayOpen(SelectedPaths(true).size())) {
        OpenMultipleNewTabs();
    }
}

void OpenSelectedInWindows() {
    SelectContentListItems();
    if (MayOpen(SelectedPaths(true).size())) {
        OpenMultipleNewSolvaneWindows();
    }
}

void OpenRecord(const ContentNode& node, OpenWhich files) {
    switch (LBLocation) {
    case LocationKind::Bookmarks:
    case LocationKind::Favorites:
    case LocationKind::Computer:
    case LocationKind::Assigns:
    case LocationKind::FTPSites:
        OpenPlaceRow(node);
        break;
    case LocationKind::Workbench:
    case LocationKind::SearchResults:
    case LocationKind::Drawer:
        OpenEntryRow(node, files);
        break;
    case LocationKind::DuplicateFiles:
        OpenSelectedFiles();
        break;
    default: // what is online or in an archive opens with its browser
        break;
    }
}

void HandleDoubleClick(std::string_view path) {
    static_cast<void>(RunOnWorkbench(path));
}

void ShowGuide() {
    if (RunOnWorkbench("\"PROGDIR:Docs/guide.md\"")) {
        return;
    }
    TellDosError(MSG_NO_OPEN_FILE);
}

} // namespace solvane
