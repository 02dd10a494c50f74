// A picture that only shows, in the middle of its room and never larger than it is.
#pragma once

#include "platform/intuition/Gadget.h"
#include "platform/intuition/Images.h"

namespace intuition {

class ImageGadget : public Gadget {
public:
    // The least room, in layout units.
    ImageGadget(int width, int height);
    ~ImageGadget() override;
    void SetImage(ImageId image); // takes over one use; None shows nothing
};

} // namespace intuition
