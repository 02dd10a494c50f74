// What a click, a double click, a column title and an edited name in the Content pane lead to. The list
// browser owns the selection while the user works; the records get it here.
#pragma once

#include "model/Content.h"
#include "platform/intuition/ListBrowser.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// --- State ---

inline constexpr std::int32_t NoForcedEvent = -1;

extern std::uint16_t RelEvent; // the reason of the last event, a value of ListEventKind
// Takes the place of the next event's reason, once; NoForcedEvent for none. Written by whoever has moved the
// selection and wants the row to behave as if it were clicked.
extern std::int32_t ForceRelEvent;
extern std::size_t EventRow; // the row that the last event is about; NoRow for none

// --- Functions ---

// Serves an event of the Content list: its own when text is empty, or, with ForceRelEvent set, that of the
// row with the focus mark. Other texts run one branch with the record given, wherever the selection is:
// "Content1" and its like ("Bookmarks1", "Favorites1", "Workbench1", "Computer1", "Assigns1", "FTPSites1",
// "OS4Depot1", "Aminet1", "Search1", "DuplicateFile1", "Archive1") what a click on it does, "Content2"
// ("Assigns2", "FTPSites2", "OS4Depot2", "Aminet2", "Archive2") what a double click does. Nothing for a
// branch of a location that is not on show.
void HandleContentListBrowser(std::string_view text, const ContentNode* record = nullptr);

// Lets the user edit the name of the one selected entry in its row, where that can be done.
void StartInlineRename();

} // namespace solvane
