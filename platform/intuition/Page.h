// A pane of which one page shows at a time. The page with nothing on it is drawn as an empty field.
#pragma once

#include "platform/intuition/Gadget.h"

#include <cstddef>
#include <string_view>

namespace intuition {

class Page : public Gadget {
public:
    // One empty page. name: what a screen reader calls the pane.
    explicit Page(std::string_view name);
};

} // namespace intuition
