// The one road to a place: by the text that a row of the Navigation pane carries, a menu or key sends, or a
// bookmark stands for.
#pragma once

#include "locations/History.h"
#include "model/LocationKind.h"

#include <functional>
#include <string>
#include <string_view>

namespace solvane {

// The word by which a place that is no drawer is routed ("FTPSites" for "FTP Sites"), found by its own word
// or by its shown name without regard to case; empty for anything else.
[[nodiscard]] std::string_view NavigationWordOf(std::string_view place);

// The word of a location. Of the two lists of an online place the recent one, when name is what that is
// called; empty for a drawer and for what lives in memory alone.
[[nodiscard]] std::string_view WordOfPlace(LocationKind location, std::string_view name);

// Goes where the text leads: a word, or "[Fav]", "[Dev]", "[FTP]" and what it names, without regard to case.
// Empty stands for the pane's next event, which may also close or open a section. With an Alt key held a new
// window is opened there instead, with Control a new tab. What cannot be found is told, and everything stays.
void HandleNavigationListBrowser(std::string_view text);

// The same in this tab, whatever keys are held. False when it could not be done, after a requester. Again
// counts for words alone.
bool GoToPlace(std::string_view text, Arrival arrival = Arrival::New);

// Goes to what a bookmark or favorite stands for, in this tab. False as above.
bool GoToKeptPlace(LocationKind location, std::string_view name, std::string_view path);
// The argument with which a new window opens there.
[[nodiscard]] std::string ArgumentOfKeptPlace(LocationKind location, std::string_view name,
                                              std::string_view path);

// False, after a requester, while nothing is there that mounts sites.
[[nodiscard]] bool CanReachSites();

// Goes to a place where the keys held at the last event want it: in a new window, opened with that argument,
// or by arrive in a new or in this tab. False when arrive could not show it; a new tab is then closed again.
bool GoWhereWanted(std::string_view argument, const std::function<bool()>& arrive);

// Reads the place on show anew, whatever it is; the scroll position stays.
void ReloadLocation();

} // namespace solvane
