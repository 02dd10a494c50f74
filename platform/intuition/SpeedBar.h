// A row of flat buttons that shows as many as there is room for, from a first one on; the wheel and the
// arrow keys move along it. Pressing a button sends GadgetUp with the bar's id and the button's code. For
// the Tab key the bar is one stop.
#pragma once

#include "platform/intuition/Gadget.h"
#include "platform/intuition/WishedImages.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace intuition {

class Button;

struct SpeedButton {
    std::uint16_t Code = 0;
    bool Separator = false; // a line and nothing else
    std::string Text = {};  // beside the image; data, cut with "..." where it is long
    std::string Hint = {};  // also the name for screen readers where there is no text
    // One use each, which the bar takes over. Without a form of its own a state shows the plain image.
    ImageId Image = ImageId::None, Selected = ImageId::None, Ghosted = ImageId::None;
    // Takes the place of text and image as soon as it is loaded, which nobody waits for. Without steps or
    // without a picture they stay.
    ImageWish Wish = {};
};

class SpeedBar : public Gadget {
public:
    // name: what a screen reader calls the bar.
    SpeedBar(std::uint16_t id, std::string_view name);
    ~SpeedBar() override;

    // Replaces the buttons; all can be pressed then. The first visible one stays as far as it can.
    void SetButtons(std::vector<SpeedButton> buttons);
    // All buttons with that code.
    void SetButtonDisabled(std::uint16_t code, bool disabled);
    // Of the first one with that code; true when there is none.
    [[nodiscard]] bool IsButtonDisabled(std::uint16_t code) const;

    [[nodiscard]] std::size_t Total() const; // separators are counted, too
    [[nodiscard]] std::size_t Visible() const;
    [[nodiscard]] std::size_t Top() const; // the first visible one
    // As far as there is something hidden on that side.
    void SetTop(std::size_t top);

    // Where the first button with that code begins, in layout units from the left edge; 0 when it is hidden.
    [[nodiscard]] int LeftOf(std::uint16_t code) const;

    // The buttons beside the bar that scroll it: from now on each can be pressed exactly while something is
    // hidden on its side. They live as long as the bar, and are no stops for the Tab key.
    void SetEnds(Button& left, Button& right);
};

} // namespace intuition
