#include "sak/Images.h"

#include "platform/intuition/WishedImages.h"

namespace solvane {

intuition::ImageId SAK_LoadImage(std::string_view path, int width, int height, intuition::ImageId fallback) {
    return intuition::LoadImage({{{std::string(path)}}, width, height, fallback});
}

intuition::ImageId SAK_CopyImage(intuition::ImageId image) {
    intuition::RetainImage(image);
    return image;
}

} // namespace solvane
