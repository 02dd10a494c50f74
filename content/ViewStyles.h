// Which view style is in force where: the location's preference, or for drawers a style that is bound to
// their path. It shows nothing; BuildLists does.
#pragma once

#include "model/Content.h"
#include "model/Prefs.h"

#include <cstdint>

namespace solvane {

inline constexpr std::int32_t NoLocationsStyle = 99;

struct IconBox {
    int Width = 0, Height = 0; // layout units

    bool operator==(const IconBox&) const = default;
};

// --- State ---

// The style that LocationsList binds to the path on show, NoLocationsStyle for none. Written by
// CheckLocations.
extern std::int32_t LocationsViewStyle;

// --- Functions ---

// Looks CurrentPath up in LocationsList: the first record whose path stands in it, case aside, counts.
void CheckLocations();

// The preference that holds the style of that location; the one of drawers where a location has none.
[[nodiscard]] std::int32_t PrefsRecord::*StyleSettingOf(LocationKind location);
[[nodiscard]] std::int32_t& StylePreferenceOf(LocationKind location);

// The style of what is on show. A bound style leaves the preference alone.
[[nodiscard]] std::int32_t ViewStyleInForce();

// True for the styles whose rows show pictures as they look, and for those with a large picture in any row.
[[nodiscard]] bool ShowsThumbnails(std::int32_t style);
[[nodiscard]] bool HasLargePictures(std::int32_t style);

// The box of a thumbnail by Prefs.ThumbnailSize; a step that there is not becomes 1, in the preferences too.
[[nodiscard]] IconBox ThumbnailBox();

// Prefs.TilesIconSize where that is 32, 64, 128 or 256, else 64.
[[nodiscard]] int TilesIconSide();

} // namespace solvane
