// A row of tabs, each with a number of the program's own. A pick sends GadgetUp; so does the close mark that
// a tab may carry. Tabs that do not fit scroll, but for the extra one, in whose
// place a button stays then; labels are data. The gadget shows what it was given last: the
// program keeps the list.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace intuition {

struct ClickTabLook {
    std::uint32_t UserData = 0; // tells the tabs apart
    std::string Text = {};
    std::string Hint = {}; // shown when the pointer rests on it
    bool Extra = false;    // no close mark, and neither keys nor the wheel lead to it
};

enum class ClickTabKind { None, Pick, Close };

struct ClickTabEvent {
    ClickTabKind Kind = ClickTabKind::None;
    std::uint32_t UserData = 0;
};

class ClickTab : public Gadget {
public:
    // name: what a screen reader calls the row.
    ClickTab(std::uint16_t id, std::string_view name);

    // Shows these tabs, of which the one with the user data current is picked. Tabs that are there already
    // keep their place, so the ones that stay must have kept their order. No event comes of it.
    void Attach(const std::vector<ClickTabLook>& tabs, std::uint32_t current);
    // Until the next Attach nothing that the user does is an event.
    void Detach();
    // The label and hint of one tab; nothing when there is none with that user data.
    void SetText(std::uint32_t userData, std::string_view text, std::string_view hint);

    // Fetches the event that belongs to the oldest unfetched GadgetUp of this gadget.
    [[nodiscard]] ClickTabEvent NextEvent();
};

} // namespace intuition
