// What the kinds of devices are called, and their pictures. Which kind a device is of is found out in
// locations/.
#pragma once

#include "model/Devices.h"
#include "platform/dos/Info.h"
#include "platform/intuition/WishedImages.h"

#include <string>
#include <string_view>
#include <vector>

namespace solvane {

// "Hard Disk" in number; of a kind that there is not, that of an unknown device.
[[nodiscard]] std::int32_t NameOfDeviceType(std::uint32_t type);

// Path of the picture for devices of that kind, and for this very device: the one of SYS: has its own.
[[nodiscard]] std::string_view GetDeviceType2(std::uint32_t type);
[[nodiscard]] std::string_view GetDeviceType(const DevicesNode& device);

// Where the large picture of a device may come from: its own "Disk.info", where its kind may have one, and
// that of its kind. Nothing is looked up on a device that may never answer.
[[nodiscard]] std::vector<intuition::ImageStep> DeviceImageSteps(const DevicesNode& device);

// The RAM disk takes what memory there is: its size is the machine's, not that of the disk that it lies on.
void SetMemoryFigures(dos::InfoData& info);

} // namespace solvane
