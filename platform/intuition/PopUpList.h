// A list of choices that pops up under another gadget, with a mark on one of them. Nothing of it is seen
// until then, and it takes no room in its layout. A choice sends GadgetUp. Labels are data.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace intuition {

class PopUpList : public Gadget {
public:
    // name: what a screen reader calls the list.
    PopUpList(std::uint16_t id, std::string_view name);

    // Shows the list under the gadget, which gives it its window; a list that is there already is replaced.
    // The marked choice is the one that the keys begin at; one that there is not marks none.
    void PopUp(const Gadget& under, const std::vector<std::string>& labels, std::size_t marked);
    [[nodiscard]] bool IsUp() const;

    // The choice that was made last, for the GadgetUp that told of it; NoRow before the first.
    [[nodiscard]] std::size_t Picked() const;
};

} // namespace intuition
