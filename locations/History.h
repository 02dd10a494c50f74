// Where the user has been, for the tab on show: the entries, the position among them, and the scroll position
// that each place had. It goes nowhere itself; VisitHistory does.
#pragma once

#include "model/History.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace solvane {

// Gives a new tab its first entry: the place that the preferences open at, or the one named.
void StartHistory();
void StartHistory(std::string_view name, std::string_view path, LocationKind location);
// By what an entry names the place of a path: a place that is no drawer has its word, whatever the user calls
// it.
[[nodiscard]] Text<1024> PathInHistory(LocationKind location, std::string_view path);

// How a place comes on show. Again: as it was left, by the history or by its tab; its entry is the current
// one and LBTop says where its list begins.
enum class Arrival : std::uint8_t { New, Again };

// Notes the first visible row in the current entry. Before every navigation, and before a tab is left.
void BeforeSwitchHistory();
// The same for a list that takes the place of the one on show, which is Again not to be noted: New has it
// begin at its top.
void LeaveShownPlace(Arrival arrival);
// Has the next list shown from the row that the current entry has noted.
void AfterSwitchHistory();

// Adds the place to which the user goes now, and forgets what lay ahead. Nothing when the current entry has
// this path, case aside. Notes the scroll position of the list on show first.
void AddHistoryNode(std::string_view name, std::string_view path, LocationKind location);
// The same for a place that is on show already: BeforeSwitchHistory was called before it came.
void AddShownPlace(std::string_view name, std::string_view path, LocationKind location);

// One entry back, forth, to the oldest, to the newest: the entry that is current then, null only without any.
// At the end nothing changes.
HistoryNode* HistoryBack();
HistoryNode* HistoryForward();
HistoryNode* HistoryFirst();
HistoryNode* HistoryLast();
// The entry of that index, counted from the newest. Null when there is none or it is the current one.
HistoryNode* ChooseHistory(std::size_t index);

// Takes back a step that has led to nothing: the entry of that index, which HistorySelected had before, is
// current again, with its first visible row.
void ReturnInHistory(std::int32_t index);

// Brings the history gadgets in line with the history of the tab on show.
void SwitchHistory();

void ClearHistory();

// Takes the newest entry back, for an action that failed after it had added one.
void DeleteLastHistoryRefreshList();

} // namespace solvane
