// Makes pictures larger and smaller. Private to platform/icon.
#pragma once

#include "platform/icon/IconPicture.h"

#include <cstdint>

namespace icon {

// Every pixel that many times across and down; both at least 1.
[[nodiscard]] IconPicture RepeatPixels(const IconPicture& picture, std::uint32_t across, std::uint32_t down);

// The picture in another size, neither 0 nor above MaxPictureSide: each pixel is the mean of the area
// it covers, or lies on a straight line between its neighbours where the picture grows. Transparent
// pixels give no colour.
[[nodiscard]] IconPicture ScalePicture(const IconPicture& picture, std::uint32_t width, std::uint32_t height);

} // namespace icon
