#include "model/LocationKind.h"

namespace solvane {

std::string_view WordOfLocation(LocationKind location) {
    switch (location) {
    case LocationKind::Bookmarks:
        return "Bookmarks";
    case LocationKind::Favorites:
        return "Favorites";
    case LocationKind::Workbench:
        return "Workbench";
    case LocationKind::Computer:
        return "Computer";
    case LocationKind::Assigns:
        return "Assigns";
    case LocationKind::FTPSites:
        return "FTPSites";
    case LocationKind::OS4Depot:
        return "OS4Depot";
    case LocationKind::Aminet:
        return "Aminet";
    default:
        return {};
    }
}

} // namespace solvane
