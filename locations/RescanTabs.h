// Marks tabs whose rows are out of date. A marked tab is read anew when it is shown next.
#pragma once

#include "model/LocationKind.h"

#include <cstdint>
#include <string_view>

namespace solvane {

// Others: what is on show has been brought up to date, or is about to be.
enum class WhichTabs : std::uint8_t { All, Others };

// Tabs with bookmarks, favorites, the Workbench, devices or a drawer.
void SetRescanAllTabs(WhichTabs which = WhichTabs::All);
// Tabs of that kind of place.
void SetRescanAllTabsByLocation(LocationKind location, WhichTabs which = WhichTabs::All);
// Tabs at that path, case aside, but the one with that number, which made the change.
void SetRescanAllTabsByPath(std::string_view path, std::uint32_t tabNumber);
void SetRescanAllTabsComputer(WhichTabs which = WhichTabs::All);

// Shows each marked tab once, so that it is read anew, and comes back to the active one.
void RescanAllTabs();

} // namespace solvane
