// What the rows of the lists of places show: devices, assigns, and the places that the user keeps. Their
// entries are drawn like those of drawers; only their texts, bars and pictures come from here.
#pragma once

#include "content/SortKeys.h"
#include "interface/Images.h"
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
// True for the entry of a list of places, whose looks come from here.
[[nodiscard]] bool IsPlace(const ContentNode& node);

// What a cell of a place shows in that view style.
[[nodiscard]] PlaceTexts PlaceCellTexts(const ContentNode& node, DetailsColumn column, std::int32_t style);

// The small picture of a place, which is shared and not to be released; where the one beside the texts of the
// Details pane may come from; and where the one of its row in that view style may, instead of the small one:
// nothing in a style with small pictures where Prefs.ShowActualIcons is off.
[[nodiscard]] intuition::ImageId PlacePicture(const ContentNode& node);
[[nodiscard]] std::vector<intuition::ImageStep> PlacePictureSteps(const ContentNode& node);
[[nodiscard]] std::vector<intuition::ImageStep> PlaceImageSteps(const ContentNode& node, std::int32_t style);

// The small picture of what a bookmark or favorite leads to.
[[nodiscard]] ListImage ListImageOf(LocationKind location, std::string_view path);
// True when the path lies on a disk that may never answer, so that nothing is looked up there unasked.
[[nodiscard]] bool MayHang(std::string_view path);

// Sorts ContentList as the list of devices, and as that of assigns; direction 0 is ascending. In the Details
// view devices go by Prefs.ComputerDetailsCISortColumn, else as the master list goes.
void SortDevicesList(std::int32_t direction);
void SortAssignsList(std::int32_t direction);

} // namespace solvane
