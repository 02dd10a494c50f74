// Loading single pictures, and further uses of one that is loaded. Pictures of rows are loaded by
// intuition::WishedImages, off the main task.
#pragma once

#include "platform/intuition/Images.h"

#include <string_view>

namespace solvane {

// The picture in the file at path, or with a name in ".info" that of the icon, as large as fits width times
// height (layout units); icons grow to that size. When it cannot be loaded the result is a copy of fallback,
// which may be None. One use, for intuition::ReleaseImage.
[[nodiscard]] intuition::ImageId SAK_LoadImage(std::string_view path, int width, int height,
                                               intuition::ImageId fallback);

// One more use of the picture, whose pixels are shared; for intuition::ReleaseImage. None stays None.
[[nodiscard]] intuition::ImageId SAK_CopyImage(intuition::ImageId image);

} // namespace solvane
