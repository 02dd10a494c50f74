// The roads by which a user gets somewhere: the typed path, and the events of the Content list. PlaceRouter
// has the words of places; where a road leads to a drawer, EnterDrawer takes over.
#pragma once

#include "locations/EnterDrawer.h"
#include "locations/PlaceRouter.h"
#include "model/ContentNode.h"

#include <string_view>

namespace solvane {

// Goes where the path typed into CurrentPath leads: a place's name, a host path, an assign or a drawer. On
// failure the path that was on show comes back, after a requester where something was named that is not
// there.
void HandlePathGadget();

// Serves an event of the Content list. text is empty for the gadget's own events.
void HandleContentListBrowser(std::string_view text);

// Opens the selected entry as a double click on its row does.
void OpenSelectedEntry();

// Enters a drawer or a link to one, or the root of a device or assign; files cannot be opened yet.
void OpenEntry(const ContentNode& entry);

} // namespace solvane
