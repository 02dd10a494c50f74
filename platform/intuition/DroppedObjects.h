// Objects that the user drops on a window. Private to platform/intuition.
#pragma once

#include <string>
#include <vector>

class QDropEvent;

namespace intuition {

// Accepts a drag that brings objects of this machine, as a copy.
void TakeDrag(QDropEvent& event);

// The paths of what is dropped, volume paths where there is a volume; objects of other machines are left out.
[[nodiscard]] std::vector<std::string> DroppedObjects(QDropEvent& event);

} // namespace intuition
