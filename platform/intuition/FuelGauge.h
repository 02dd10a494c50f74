// A bar that shows how full something is.
#pragma once

#include "platform/intuition/Gadget.h"

namespace intuition {

class FuelGauge : public Gadget {
public:
    // hint: what is full; also the gauge's name for screen readers.
    explicit FuelGauge(std::string_view hint);
    // 0 to 100; beyond that the nearest.
    void SetLevel(int percent);
    [[nodiscard]] int Level() const;
};

} // namespace intuition
