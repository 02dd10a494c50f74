// The two families of icon files. Private to platform/icon.
#pragma once

#include "platform/icon/Icon.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace icon {

// Files that begin with a DiskObject: classic, NewIcon, colour and ARGB icons.
[[nodiscard]] std::optional<DiskObject> ParseClassicIcon(std::string_view file);
// The file with what differs in the object; nothing as for WriteDiskObject.
[[nodiscard]] std::optional<std::string> WriteClassicIcon(std::string_view file, const DiskObject& object);
// The file of an object of that type that has nothing else.
[[nodiscard]] std::string NewClassicIcon(IconType type);

[[nodiscard]] bool IsPng(std::string_view file);
// PNG files, with the object in a chunk of their own; without it an object of type None.
[[nodiscard]] std::optional<DiskObject> ParsePngIcon(std::string_view file);
[[nodiscard]] std::optional<std::string> WritePngIcon(std::string_view file, const DiskObject& object);
// The picture and the selected one behind it, each a PNG stream of its own; empty when missing.
[[nodiscard]] std::array<std::string_view, 2> PngStreams(std::string_view file);

// A tool, drawer and so on with a plain picture, which is always there.
[[nodiscard]] DiskObject BuiltInIcon(IconType type);

} // namespace icon
