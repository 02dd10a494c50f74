// The items in the icon chunk of a PNG icon: numbers and texts under tags. Private to platform/icon.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace icon {

// Texts are marked so in the names, all others are one number.
enum class IconTag : std::uint32_t {
    X = 0x80001001,
    Y = 0x80001002,
    DrawerX = 0x80001003,
    DrawerY = 0x80001004,
    DrawerWidth = 0x80001005,
    DrawerHeight = 0x80001006,
    DrawerFlags = 0x80001007,
    ToolWindowText = 0x80001008,
    StackSize = 0x80001009,
    DefaultToolText = 0x8000100A,
    ToolTypeText = 0x8000100B,
    ViewModes = 0x8000100C,
    ScrollX = 0x8000100D,
    ScrollY = 0x8000100E,
    Type = 0x8000100F,
    Frameless = 0x80001010,
    DrawerFlags2 = 0x80001107,
};

// Drawer flags.
inline constexpr std::uint32_t ShowAllFlag = 1;
inline constexpr std::uint32_t ShowIconsFlag = 2; // else as text
inline constexpr std::uint32_t SortShift = 2;     // of the text view, two bits

[[nodiscard]] bool IsTextTag(IconTag tag);

struct PngItem {
    IconTag Tag;
    std::uint32_t Number;   // 0 for a text
    std::string_view Text;  // bytes as in the file; empty for a number
    std::string_view Whole; // with tag and padding
};

struct PngItems {
    std::vector<PngItem> Items;
    // From the first unknown tag on nothing can be read, since the size of its item is unknown.
    std::string_view Rest;
};

inline constexpr std::size_t MaxPngItems = 65536; // reading ends behind one more
[[nodiscard]] PngItems SplitPngItems(std::string_view chunk);

[[nodiscard]] std::string NumberItem(IconTag tag, std::uint32_t number);
[[nodiscard]] std::string TextItem(IconTag tag, std::string_view bytes);

} // namespace icon
