// The least work that lists one drawer: the yardsticks that scans are measured by. One core, nothing kept but
// what the host says.
#pragma once

#include <cstddef>
#include <string>

namespace solvane {

// Names, and size, date and mode of each entry. Returns the number of entries, 0 when the drawer cannot be
// read.
std::size_t BareWalk(const std::string& hostDrawer);

// The same, and the first 64 bytes of each file.
std::size_t BareWalkAndRead(const std::string& hostDrawer);

} // namespace solvane
