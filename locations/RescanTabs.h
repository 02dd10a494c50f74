// Marks tabs whose rows are out of date. A marked tab is read anew when it is shown next.
#pragma once

#include "model/LocationKind.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// All tabs with bookmarks, favorites, the Workbench, devices or a drawer.
void SetRescanAllTabs();
// All tabs of that kind of place.
void SetRescanAllTabsByLocation(LocationKind location);
// All tabs at that path, case aside, but the one with that number, which made the change.
void SetRescanAllTabsByPath(std::string_view path, std::uint32_t tabNumber);
void SetRescanAllTabsComputer();

// Shows entries whose names begin with "." from now on, or no more, in all tabs.
void ToggleHiddenEntries();

// Changes the view style as its chooser says; with ChangeAllTabs that of this kind of place in all tabs.
void ChangeViewStyleOfTabs();

// Shows each marked tab once, so that it is read anew, and comes back to the active one.
void RescanAllTabs();

} // namespace solvane
