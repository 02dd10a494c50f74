// The lists of places that have no drawer behind them: Bookmarks, Favorites, the Workbench, Computer,
// Assigns, sites. Shows one of them in this tab.
#pragma once

#include "locations/History.h"
#include "model/LocationKind.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// Its entries lie on the Workbench, beside the volumes; it is watched while that is on show.
inline constexpr std::string_view DesktopDrawer = "Desktop:";

struct VirtualPlace {
    std::string_view Word; // by which it is routed, and its path in the history
    std::int32_t Name;     // number of the text that it is shown by
    LocationKind Location;
    std::uint16_t Which; // of the two lists of an online place: 0 the recent one, 1 the full one
    bool (*Fill)();      // fills ContentList; false: there is no content yet. Null: Show does it all
    void (*Show)(Arrival) = nullptr;
};

// By word or shown name, without regard to case. Null: no such list.
[[nodiscard]] const VirtualPlace* FindVirtualPlace(std::string_view name);
// The list of a location; null for a drawer and what lives in memory alone.
[[nodiscard]] const VirtualPlace* VirtualPlaceOf(LocationKind location, std::uint16_t which);
// True for "OS4Depot" and "Aminet".
[[nodiscard]] bool IsPlaceWithoutList(std::string_view word);

// Makes the list the location of this tab: history, path, rows, Details pane and status bar.
void ShowVirtualPlace(const VirtualPlace& place, Arrival arrival);

// Fills ContentList with the mounted volumes and what lies on the user's desktop.
bool UpdateWorkbenchList();

} // namespace solvane
