// A button that pops up a list of choices and shows the present one. A pick sends GadgetUp, with the position
// as its code. Labels are data.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <string>
#include <vector>

namespace intuition {

class Chooser : public Gadget {
public:
    // Needs a hint: it is also its name for screen readers.
    Chooser(std::uint16_t id, const std::vector<std::string>& labels, std::string_view hint);

    // Replaces the choices; the first one is shown. No event comes of it.
    void SetLabels(const std::vector<std::string>& labels);
    [[nodiscard]] std::size_t Count() const;
    // Shows a choice; one that there is not shows nothing. No event comes of it.
    void SetSelected(int position);
    [[nodiscard]] int Selected() const; // -1 for none
};

} // namespace intuition
