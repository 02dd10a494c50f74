#include "locations/VisitHistory.h"

#include "content/DetailsPane.h"
#include "content/Drawers.h"
#include "interface/MainLayout.h"
#include "interface/MenuState.h"
#include "locations/History.h"
#include "locations/Navigation.h"
#include "model/Program.h"
#include "sak/Locale.h"
#include "sak/Messages.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace solvane {

namespace {

// The history whose entries the pop-up list shows. What is picked in it counts in no other one.
struct ShownHistory {
    const void* List = nullptr;
    const void* Newest = nullptr;
    std::uint32_t Entries = 0;

    bool operator==(const ShownHistory&) const = default;
};
ShownHistory PoppedUp;

ShownHistory HistoryOnShow() {
    if (!HistoryList) {
        return {};
    }
    return {HistoryList.get(), SAK_FirstGenericListNode(*HistoryList), SAK_GenericListCount(*HistoryList)};
}

void ShowDrawerOf(const HistoryNode& entry) {
    const Text<1024> before = PathUndoBuffer;
    SetCurrentPath(Text<1024>(entry.Path));
    if (!ScanDrawer()) {
        SetCurrentPath(before); // the list of that place is still on show
        return;
    }
    DetailsPane2();
}

} // namespace

void HandleHistory() {
    if (CurrentHistory == nullptr) {
        return;
    }
    Qualifier = 0;
    AfterSwitchHistory();
    const LocationKind location = CurrentHistory->Location;
    const std::string_view word = WordOfPlace(location, CurrentHistory->Name);
    const bool isGone = location == LocationKind::SearchResults || location == LocationKind::DuplicateFiles ||
                        location == LocationKind::Archive; // an archive cannot be opened yet
    if (!word.empty()) {
        GoToPlace(word, Arrival::Again);
    } else if (!isGone) {
        ShowDrawerOf(*CurrentHistory);
    }
    DoReload = 0;
    SetMenuState();
    SetToolbarState();
}

void GoBackInHistory() {
    const HistoryNode* before = CurrentHistory;
    if (HistoryBack() != before) {
        HandleHistory();
    }
}

void GoForwardInHistory() {
    const HistoryNode* before = CurrentHistory;
    if (HistoryForward() != before) {
        HandleHistory();
    }
}

void PopHistoryChooser() {
    if (Objects.HistoryChooser == nullptr || !HistoryList) {
        return;
    }
    std::vector<intuition::PopUpChoice> entries;
    entries.reserve(SAK_GenericListCount(*HistoryList));
    for (const HistoryNode& entry : *HistoryList) {
        const bool isCurrent = std::cmp_equal(entries.size(), std::max(HistorySelected, 0));
        entries.push_back({.Label = std::string(entry.Name.View()),
                           .Mark = isCurrent ? intuition::ChoiceMark::Dot : intuition::ChoiceMark::None});
    }
    PoppedUp = HistoryOnShow();
    Objects.HistoryChooser->PopUp(*Objects.History, std::move(entries));
}

void HandleHistoryChooser() {
    if (Objects.HistoryChooser != nullptr && PoppedUp == HistoryOnShow() &&
        ChooseHistory(Objects.HistoryChooser->Picked()) != nullptr) {
        HandleHistory();
    }
}

} // namespace solvane
