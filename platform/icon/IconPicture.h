// Pictures of icons as 32-bit colours, of every kind of icon file. Nothing here shows them or touches
// files; it works on what a DiskObject has read, from any thread.
#pragma once

#include "platform/icon/Icon.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace icon {

inline constexpr std::uint32_t MaxPictureSide = 1024; // pixels; larger pictures are refused as broken

enum class IconState : std::uint8_t { Normal, Selected };

struct IconPicture {
    std::uint32_t Width = 0, Height = 0; // pixels
    std::vector<std::uint32_t> Pixels;   // 0xAARRGGBB, colours not multiplied by alpha, row by row
};

// The picture in its own size. Of the kinds in the file the best that can be decoded is taken: PNG, ARGB,
// colour, NewIcon, planar. Selected is the second picture of that kind; where there is none it is made:
// planar pictures are inverted as their gadget says, others darkened. Nothing when there is no whole picture.
[[nodiscard]] std::optional<IconPicture> GetIconPicture(const DiskObject& object, IconState state);

// The same, as large as fits a box of that size with its shape kept (0 counts as 1, sides above
// MaxPictureSide as that): the result may be smaller than the box, never larger. Pixels that were
// drawn twice as high as wide, or the reverse, are squared first. Planar pictures grow by whole
// numbers only, so that their pixels stay sharp.
[[nodiscard]] std::optional<IconPicture> DrawIcon(const DiskObject& object, std::uint32_t width,
                                                  std::uint32_t height, IconState state);

} // namespace icon
