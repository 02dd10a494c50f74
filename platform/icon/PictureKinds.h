// The decoders of the kinds of pictures in icon files. Each gives nothing for a picture that is missing,
// not whole, or larger than MaxPictureSide. Private to platform/icon.
#pragma once

#include "platform/icon/FormIcon.h"
#include "platform/icon/IconPicture.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace icon {

inline constexpr std::uint32_t Opaque = 0xFF000000;

[[nodiscard]] inline bool IsPictureSize(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= MaxPictureSide && height <= MaxPictureSide;
}

// How the pixels of a planar picture are changed when it is drawn selected without a second one.
enum class Inversion : std::uint8_t {
    None,
    Whole,    // every pixel, the ground too
    Backfill, // but colour 0 that touches the edge
};
// An image record with its planes, in the colours of a Workbench of that depth; colour 0 is transparent.
[[nodiscard]] std::optional<IconPicture> DecodePlanar(std::string_view image, Inversion inversion);

// The lines of tool types that begin with "IM1=" or "IM2=".
[[nodiscard]] std::optional<IconPicture> DecodeNewIcon(const std::vector<std::string>& lines,
                                                       IconState state);

[[nodiscard]] std::optional<IconPicture> DecodeColour(const FormIcon& form, IconState state);
// ARGB chunks, or the PNG streams in the same place.
[[nodiscard]] std::optional<IconPicture> DecodeArgb(const FormIcon& form, IconState state);

// A PNG stream. Only the chunks that make the picture are used; colour profiles are not.
[[nodiscard]] std::optional<IconPicture> DecodePng(std::string_view stream);

} // namespace icon
