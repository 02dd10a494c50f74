// What the Content pane shows, by number: the kind of place that a tab, a bookmark or a start leads to.
#pragma once

#include <cstdint>

namespace solvane {

enum class LocationKind : std::uint32_t {
    Bookmarks = 2,
    Favorites = 3,
    Workbench = 4,
    Computer = 5,
    Assigns = 6,
    FTPSites = 7,
    OS4Depot = 8,
    Aminet = 9,
    SearchResults = 10,
    DuplicateFiles = 11,
    Archive = 12,
    Drawer = 13,
    None = 99, // before the first location is shown
};

} // namespace solvane
