#include "model/PrefsLists.h"

namespace solvane {

std::unique_ptr<GenericList<LocationsNode>> LocationsList;
std::unique_ptr<GenericList<BookmarksNode>> MasterBookmarksList;
std::unique_ptr<GenericList<FavoritesNode>> MasterFavoritesList;
std::unique_ptr<GenericList<ToolbarNode>> ToolbarList;
std::unique_ptr<GenericList<UserButtonsNode>> UserButtonsList;
std::unique_ptr<GenericList<FTPSitesNode>> FTPSitesList;

} // namespace solvane
