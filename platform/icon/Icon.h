// Icons of Workbench objects: what an object's ".info" file says about it, for every kind of icon
// file (classic, NewIcon, colour, ARGB, PNG). Pictures are passed over, not decoded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace icon {

// X and Y each by itself: the icon may be placed freely.
inline constexpr std::int32_t NoIconPosition = INT32_MIN;
inline constexpr std::int32_t MinStackSize = 4096;           // bytes; less in a file means this
inline constexpr std::size_t MaxIconFile = 16 * 1024 * 1024; // bytes; larger files are no icons

enum class IconType : std::uint8_t {
    None = 0, // a PNG icon that does not say: the kind of the object decides
    Disk = 1,
    Drawer = 2,
    Tool = 3,
    Project = 4,
    Garbage = 5,
    Device = 6,
    Kick = 7,
    AppIcon = 8
};

// Which kind of picture the file holds, by the order in which they are preferred.
enum class IconFormat : std::uint8_t { Planar, NewIcon, Colour, Argb, Png };

// The window of a drawer icon.
struct DrawerData {
    std::int16_t Left, Top, Width, Height;
    std::int32_t CurrentX, CurrentY; // scroll offset of the contents
    std::uint32_t Flags;             // 0 default, 1 only icons, 2 and 3 all files
    std::uint16_t ViewModes;         // 0 as the parent, 1 icon, 2 name, 3 date, 4 size, 5 type
};

struct DiskObject {
    IconType Type = IconType::None;
    IconFormat Format = IconFormat::Planar;
    std::uint8_t Revision = 0;          // 0 OS 1.x, 1 OS 2 and later
    std::string DefaultTool;            // UTF-8, as all texts here
    std::vector<std::string> ToolTypes; // what users see, in the order of the file
    // The lines in which a NewIcon hides its pictures, bytes as in the file.
    std::vector<std::string> ImageToolTypes;
    std::string ToolWindow;
    std::int32_t StackSize = MinStackSize; // bytes
    std::int32_t CurrentX = NoIconPosition, CurrentY = NoIconPosition;
    std::int16_t Width = 0, Height = 0; // select box of the planar image, 0 for a PNG icon
    std::optional<DrawerData> Drawer;
};

// Reads the icon file's bytes. Nothing when they are no icon or are broken before the object is
// whole; broken or missing picture data behind it are not an error.
[[nodiscard]] std::optional<DiskObject> ParseDiskObject(std::span<const std::byte> file);

// The icon of the object name, from the file name + ".info". Nothing on failure, the reason is in
// IoErr (212 when the file is no icon). An icon of no stated type gets one from what it belongs to.
[[nodiscard]] std::optional<DiskObject> GetDiskObject(std::string_view name);

// The value of the first tool type of that name, empty for a bare name. Names compare without
// regard to case; a disabled one, "(NAME=value)", is not found.
[[nodiscard]] std::optional<std::string> FindToolType(const DiskObject& object, std::string_view name);
// True when value is one of the values of a tool type text, which are separated by "|".
[[nodiscard]] bool MatchToolValue(std::string_view toolValue, std::string_view value);

} // namespace icon
