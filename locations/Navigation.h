// The roads by which a user gets somewhere: the typed path, and the entries of the Content list. PlaceRouter
// has the words of places; where a road leads to a drawer, EnterDrawer takes over.
#pragma once

#include "locations/EnterDrawer.h"
#include "locations/PlaceRouter.h"
#include "model/ContentNode.h"

namespace solvane {

// Goes where a typed path leads: a place's name, a host path, an assign or a drawer. On failure the user
// stays where he is, after a requester where something was named that is not there. The path gadget shows the
// path on show then.
void HandlePathGadget(std::string_view text);

// Goes to what an entry stands for: a drawer or a link to one, the root of a device or assign, a bookmark, a
// site. Nothing for files.
void OpenEntry(const ContentNode& entry);

} // namespace solvane
