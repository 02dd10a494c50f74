// A line of text that only shows. It is data: no mnemonic, no markup, cut with "..." where it does not fit.
#pragma once

#include "platform/intuition/Gadget.h"

#include <string>

namespace intuition {

class Label : public Gadget {
public:
    explicit Label(std::string_view text, Align align = Align::Left);
    void SetText(std::string_view text);
    [[nodiscard]] const std::string& Text() const { return Shown; }

private:
    std::string Shown;
};

// Width of the text in the system font, in layout units; 0 while no display is open.
[[nodiscard]] int TextWidth(std::string_view text);

} // namespace intuition
