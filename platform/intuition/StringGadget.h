// A line that the user edits. Return sends GadgetUp; Escape brings back the text that was there when the
// gadget was entered. Bytes that are no UTF-8 are shown as a mark and come back unchanged.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <string>

namespace intuition {

class StringGadget : public Gadget {
public:
    // maximumBytes: longer input is cut at a whole character. forbidden: ASCII characters that cannot be
    // typed.
    StringGadget(std::uint16_t id, std::string_view text, std::size_t maximumBytes = 1023,
                 std::string_view forbidden = {});

    [[nodiscard]] std::string Text() const;
    void SetText(std::string_view text);
    // Shown while the gadget is empty.
    void SetPlaceholder(std::string_view text);
    void SelectAll();
};

} // namespace intuition
