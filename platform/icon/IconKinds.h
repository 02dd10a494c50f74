// The two families of icon files. Private to platform/icon.
#pragma once

#include "platform/icon/Icon.h"

#include <cstddef>
#include <optional>
#include <span>

namespace icon {

// Files that begin with a DiskObject: classic, NewIcon, colour and ARGB icons.
[[nodiscard]] std::optional<DiskObject> ParseClassicIcon(std::span<const std::byte> file);

[[nodiscard]] bool IsPng(std::span<const std::byte> file);
// PNG files, with the object in a chunk of their own; without it an object of type None.
[[nodiscard]] std::optional<DiskObject> ParsePngIcon(std::span<const std::byte> file);

} // namespace icon
