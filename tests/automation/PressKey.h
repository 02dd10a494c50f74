// A key as the loop serves it.
#pragma once

#include "automation/RawKey.h"
#include "model/Program.h"

namespace solvane {

inline Closing PressKey(std::uint16_t code, unsigned held) {
    Code = code;
    Qualifier = static_cast<std::uint16_t>(held);
    KeyText.Clear();
    return HandleRawKeys();
}

} // namespace solvane
