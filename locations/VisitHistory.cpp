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

bool ShowDrawerOf(const HistoryNode& entry) {
    const Text<1024> before = PathUndoBuffer;
    SetCurrentPath(Text<1024>(entry.Path));
    if (!ScanDrawer()) {
        SetCurrentPath(before); // the list of that place is still on show
        return false;
    }
    DetailsPane2();
    return true;
}

// Takes a step in the history and shows where it has led. When that cannot be shown the step is taken back:
// the place before it is still on show.
template <class Step>
void GoInHistory(const Step& step) {
    const HistoryNode* const before = CurrentHistory;
    const std::int32_t selected = HistorySelected;
    const HistoryNode* const reached = step();
    if (reached != nullptr && reached != before && !HandleHistory()) {
        ReturnInHistory(selected);
    }
}

} // namespace

bool HandleHistory() {
    if (CurrentHistory == nullptr) {
        return true;
    }
    Qualifier = 0;
    AfterSwitchHistory();
    const LocationKind location = CurrentHistory->Location;
    const std::string_view word = WordOfPlace(location, CurrentHistory->Name);
    const bool isGone = location == LocationKind::SearchResults || location == LocationKind::DuplicateFiles ||
                        location == LocationKind::Archive; // an archive cannot be opened yet
    bool isShown = true;
    if (!word.empty()) {
        isShown = GoToPlace(word, Arrival::Again);
    } else if (!isGone) {
        isShown = ShowDrawerOf(*CurrentHistory);
    }
    DoReload = 0;
    SetMenuState();
    SetToolbarState();
    return isShown;
}

void GoBackInHistory() {
    GoInHistory(HistoryBack);
}

void GoForwardInHistory() {
    GoInHistory(HistoryForward);
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
    if (Objects.HistoryChooser != nullptr && PoppedUp == HistoryOnShow()) {
        GoInHistory([] { return ChooseHistory(Objects.HistoryChooser->Picked()); });
    }
}

} // namespace solvane
