// One place of a tab's browsing history. The history itself belongs to the tab (WorkingSet); locations/ walks
// and changes it.
#pragma once

#include "model/Content.h"
#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>

namespace solvane {

struct HistoryNode : ListNode {
    std::uint32_t LBTop = 0; // first visible row when the place was last on show
    LocationKind Location = LocationKind::None;
    Text<128> Name;  // what the chooser shows
    Text<1024> Path; // of a drawer; of another place its fixed word
};

// --- State: of the tab on show; written by locations/History ---

extern std::unique_ptr<GenericList<HistoryNode>>& HistoryList; // newest first
extern HistoryNode*& CurrentHistory;                           // null: none yet
extern std::int32_t& HistorySelected; // index of the current entry from the head; -1: not yet started

// Whether there is an older and a newer place than the current one.
[[nodiscard]] inline bool CanGoBack() {
    return HistorySelected >= 0 && CurrentHistory != nullptr && CurrentHistory->Links.Successor != nullptr;
}
[[nodiscard]] inline bool CanGoForward() {
    return HistorySelected > 0 && CurrentHistory != nullptr && CurrentHistory->Links.Predecessor != nullptr;
}

} // namespace solvane
