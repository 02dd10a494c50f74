// A push button with a text or an image. Pressing it sends GadgetUp with its id.
#pragma once

#include "platform/intuition/Gadget.h"
#include "platform/intuition/Images.h"

namespace intuition {

enum class ButtonFrame { Raised, Flat }; // Flat: framed only under the pointer, as bars have them
// Marked: "_" stands before the letter that presses the button. Data: the text is shown as it is.
enum class ButtonText { Data, Marked };

class Button : public Gadget {
public:
    Button(std::uint16_t id, std::string_view text, ButtonText kind = ButtonText::Data,
           ButtonFrame frame = ButtonFrame::Raised);
    // An image button needs a hint: it is also its name for screen readers. The button holds one use of the
    // image and gives it back.
    Button(std::uint16_t id, ImageId image, std::string_view hint, ButtonFrame frame = ButtonFrame::Flat);

    void SetText(std::string_view text);
    void SetImage(ImageId image); // takes over one use
    // What it shows while it is disabled; without one, the image is greyed. Takes over one use.
    void SetGhostedImage(ImageId image);

private:
    void ShowImages();

    HeldImage Image, Ghosted;
    ButtonText Kind = ButtonText::Data;
};

} // namespace intuition
