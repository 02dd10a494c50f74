// The lists that the preferences document carries beside the settings, and their records. The columns of the
// Details view and the tabs of a start, which it carries too, stand with the state that they belong to.
#pragma once

#include "model/Content.h"
#include "sak/GenericLists.h"
#include "sak/Text.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace solvane {

// A path text and the view style of the drawers whose path contains it.
struct LocationsNode : ListNode {
    Text<1024> Path;
    std::int32_t ViewStyle = ViewDetails;
};

// A named place of the bookmarks.
struct BookmarksNode : ListNode {
    std::uint16_t Selected = 0; // its row in the Content list
    LocationKind Location = LocationKind::Drawer;
    Text<128> Name;
    Text<1024> Path; // of the drawer; else the name of the location
    Text<128> Key;   // "[Bkm]" and the name, cut: bookmarks of one name share it, which is intended
};

// A named place in the Navigation pane.
struct FavoritesNode : ListNode {
    std::uint16_t Selected = 0;
    LocationKind Location = LocationKind::Drawer;
    Text<128> Name;
    Text<1024> Path;
    Text<1024> Key; // "[Fav]" and the path; "Workbench" for the Workbench
};

// A site of the user's.
struct FTPSitesNode : ListNode {
    std::uint16_t Selected = 0;
    Text<128> Name;
    Text<135> Key;     // "[FTP]" and the name
    Text<129> Address; // of the host
    std::int32_t Port = 21;
    std::int32_t Timeout = 120; // seconds
    std::uint16_t Anonymous = 0;
    Text<128> Username;
    Text<128> Password; // as the host icon has it, never decoded
    Text<1024> RemoteDrawer;
};

// One button of the toolbar.
struct ToolbarNode : ListNode {
    std::uint16_t ButtonID = 0; // 0 is a separator
};

// A command line of the user's with a button. The flags are 0 or 1.
struct UserButtonsNode : ListNode {
    std::uint16_t ButtonID = 0;
    Text<128> Name;
    Text<1024> Command;
    Text<128> HintText;
    Text<1024> ImagePath;
    std::uint16_t ProcessAll = 0;      // once for each selected entry
    std::uint16_t RunAsync = 0;        // does not wait for its end
    std::uint16_t CurrentPathHome = 0; // runs in the drawer on show
    std::uint16_t QuoteEntries = 0;
    std::uint16_t ShowOutput = 0;
    std::uint16_t ReloadDrawer = 0; // afterwards
};

// --- State: made at start, filled by LoadPrefs, edited by the features that they are named after ---

extern std::unique_ptr<GenericList<LocationsNode>> LocationsList;
extern std::unique_ptr<GenericList<BookmarksNode>> MasterBookmarksList;
extern std::unique_ptr<GenericList<FavoritesNode>> MasterFavoritesList;
extern std::unique_ptr<GenericList<ToolbarNode>> ToolbarList;
extern std::unique_ptr<GenericList<UserButtonsNode>> UserButtonsList;
extern std::unique_ptr<GenericList<FTPSitesNode>> FTPSitesList;

// The first favorite with that path, and the first site of that name, without regard to case. Null: none.
// They move the cursor.
[[nodiscard]] FavoritesNode* FindMasterFavoritesNode(std::string_view path);
[[nodiscard]] FTPSitesNode* FindNavFTPSitesNode(std::string_view name);

} // namespace solvane
