// What the Content pane shows, by number: the kind of place that a tab, a bookmark or a start leads to.
#pragma once

#include <cstdint>
#include <string_view>

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

// The word by which the router knows a location; empty for those that it does not lead to.
[[nodiscard]] std::string_view WordOfLocation(LocationKind location);

} // namespace solvane
