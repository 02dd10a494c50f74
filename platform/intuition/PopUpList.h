// A list of choices that pops up under another gadget, with marks on some of them. Nothing of it is seen
// until then, and it takes no room in its layout. A choice sends GadgetUp. Labels are data.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace intuition {

enum class ChoiceMark : std::uint8_t { None, Dot, Check }; // Dot: the one in force; Check: one that is on

struct PopUpChoice {
    std::string Label = {};
    ChoiceMark Mark = ChoiceMark::None;
    bool Disabled = false;
    bool Separator = false; // a line, which cannot be chosen but counts as a position
};

class PopUpList : public Gadget {
public:
    // name: what a screen reader calls the list.
    PopUpList(std::uint16_t id, std::string_view name);

    // Shows the list under the gadget, which gives it its window; a list that is there already is replaced.
    // The keys begin at the first dot, else at the first choice. Nothing without a choice. left: how far from
    // the left edge of the gadget, in layout units.
    void PopUp(const Gadget& under, std::vector<PopUpChoice> choices, int left = 0);
    // What it shows, or showed last.
    [[nodiscard]] const std::vector<PopUpChoice>& Choices() const;
    [[nodiscard]] bool IsUp() const;

    // The choice that was made last, for the GadgetUp that told of it; NoRow before the first.
    [[nodiscard]] std::size_t Picked() const;
};

} // namespace intuition
