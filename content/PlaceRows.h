// What the rows of the Computer and Assigns lists show. Their entries are drawn like those of drawers; only
// their texts, bars and pictures come from here.
#pragma once

#include "content/SortKeys.h"
#include "model/ContentNode.h"
#include "platform/intuition/WishedImages.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace solvane {

// Numbers of the columns of the Computer list's Details view; each is also a sort key.
enum class DeviceColumn : std::int32_t { Icon = 0, Name = 1, Free, Used, Total, Bar };

struct PlaceTexts {
    std::string_view Text{};         // of the record
    std::vector<std::string> More{}; // lines under it
    std::optional<int> Gauge{};      // per cent
};
// What a cell of a device or assign shows in that view style; nothing for another entry.
[[nodiscard]] PlaceTexts PlaceCellTexts(const ContentNode& node, DetailsColumn column, std::int32_t style);

// The small picture of a device or assign, which is shared and not to be released; and where a large one may
// come from.
[[nodiscard]] intuition::ImageId PlacePicture(const ContentNode& node);
[[nodiscard]] std::vector<intuition::ImageStep> PlaceImageSteps(const ContentNode& node);

// Sorts ContentList as the list of devices, and as that of assigns; direction 0 is ascending. In the Details
// view devices go by Prefs.ComputerDetailsCISortColumn, else as the master list goes.
void SortDevicesList(std::int32_t direction);
void SortAssignsList(std::int32_t direction);

} // namespace solvane
