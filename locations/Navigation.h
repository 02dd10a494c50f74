// The roads by which a user gets somewhere: words of places, the typed path, and the events of the Content
// list. Where a road leads to a drawer, EnterDrawer takes over.
#pragma once

#include "locations/EnterDrawer.h"
#include "model/ContentNode.h"

#include <string_view>

namespace solvane {

// The word by which a place that is no drawer is routed ("FTPSites" for "FTP Sites"), found by its own word
// or by its shown name without regard to case; empty for anything else.
[[nodiscard]] std::string_view NavigationWordOf(std::string_view place);

// Goes to a place by its word, or to a device by its key ("[Dev]DH0:"), after a requester where there is no
// such device. Words of places that have no view yet leave things as they are.
void HandleNavigationListBrowser(std::string_view word);

// Goes where the path typed into CurrentPath leads: a place's name, a host path, an assign or a drawer. On
// failure the path that was on show comes back, after a requester where something was named that is not
// there.
void HandlePathGadget();

// Serves an event of the Content list. text is empty for the gadget's own events.
void HandleContentListBrowser(std::string_view text);

// Opens the selected entry as a double click on its row does.
void OpenSelectedEntry();

// Reads what is on show anew, whatever it is.
void ReloadLocation();

// Enters a drawer or a link to one, or the root of a device or assign; files cannot be opened yet.
void OpenEntry(const ContentNode& entry);

} // namespace solvane
