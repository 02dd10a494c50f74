// The IFF form in which later systems keep their pictures behind a classic icon. Finds its chunks; what
// they hold is decoded elsewhere. Private to platform/icon.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace icon {

// The picture of a state; the selected one is the second chunk of its kind.
using ChunkPair = std::array<std::string_view, 2>;

struct FormIcon {
    std::uint32_t Width = 0, Height = 0;   // of all pictures here, 0 without the chunk that tells
    std::uint8_t AspectX = 0, AspectY = 0; // shape of a pixel, 0 when unknown
    ChunkPair Colour, Argb, Png;           // empty when missing
};

// Bytes before the form are passed over, and chunks that reach past the end are cut there.
[[nodiscard]] FormIcon FindFormIcon(std::string_view rest);

} // namespace icon
