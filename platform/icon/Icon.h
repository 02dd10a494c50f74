// Icons of Workbench objects: what an object's ".info" file says about it, read and written for every
// kind of icon file (classic, NewIcon, colour, ARGB, PNG). Pictures are drawn in IconPicture.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace icon {

// X and Y each by itself: the icon may be placed freely.
inline constexpr std::int32_t NoIconPosition = INT32_MIN;
inline constexpr std::int32_t MinStackSize = 4096;                        // bytes; less in a file means this
inline constexpr std::size_t MaxIconFile = std::size_t{16} * 1024 * 1024; // bytes; larger files are no icons
inline constexpr std::size_t MaxToolTypes = 32768; // with image lines; a file with more is no icon

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

    bool operator==(const DrawerData&) const = default;
};

// What may be changed and written is marked so; the other fields tell of the file as it was read.
struct DiskObject {
    IconType Type = IconType::None; // written, unless it is GuessedType
    IconFormat Format = IconFormat::Planar;
    std::uint8_t Revision = 0;          // 0 OS 1.x, 1 OS 2 and later
    std::string DefaultTool;            // written; UTF-8, as all texts here
    std::vector<std::string> ToolTypes; // written; what users see, in the order of the file
    // Written: the lines in which a NewIcon hides its pictures, bytes as in the file.
    std::vector<std::string> ImageToolTypes;
    std::string ToolWindow;                                            // written
    std::int32_t StackSize = MinStackSize;                             // written; bytes
    std::int32_t CurrentX = NoIconPosition, CurrentY = NoIconPosition; // written
    std::int16_t Width = 0, Height = 0; // select box of the planar image, 0 for a PNG icon
    std::optional<DrawerData> Drawer;   // written
    // The type that GetDiskObject found for an icon that states none, which it goes on to be.
    IconType GuessedType = IconType::None;
    // The file's bytes, shared by copies of the object; null for an object that was never a file. They
    // hold the pictures and all that this module does not know but keeps.
    std::shared_ptr<const std::string> File;
};

// Reads the icon file's bytes. Nothing when they are no icon or are broken before the object is
// whole; broken or missing picture data behind it are not an error.
[[nodiscard]] std::optional<DiskObject> ParseDiskObject(std::span<const std::byte> file);

// The bytes of the icon file. What stands unchanged against the file that the object was read from is
// taken from there byte for byte, pictures, unknown chunks and oddities with it; an object that was
// never a file becomes a classic icon without a picture.
// Texts: classic files are ISO 8859-1, PNG ones take that and, for a text it cannot hold, UTF-8.
// Nothing is ever replaced by question marks: the result is nothing when a changed text has a
// character that the file cannot hold (see FitsIcon), when there are too many tool types, a new object has no
// type, or when the file is a broken PNG that has no place for the change.
[[nodiscard]] std::optional<std::string> WriteDiskObject(const DiskObject& object);
// Whether a text that a user typed can stand in the object's file: no NUL, valid UTF-8, and in a
// classic file nothing beyond ISO 8859-1.
[[nodiscard]] bool FitsIcon(const DiskObject& object, std::string_view text);

// The icon of the object name, from the file name + ".info". Nothing on failure, the reason is in
// IoErr (212 when the file is no icon). An icon of no stated type gets one from what it belongs to.
[[nodiscard]] std::optional<DiskObject> GetDiskObject(std::string_view name);

// Writes the icon of the object name to name + ".info"; a file that is there stays whole until the new
// one is. False with IoErr: 212 when WriteDiskObject refuses.
[[nodiscard]] bool PutDiskObject(std::string_view name, const DiskObject& object);
// Removes the icon of the object name, which itself stays. False with IoErr: 205 when there is none, 222
// when it is protected.
[[nodiscard]] bool DeleteDiskObject(std::string_view name);
// Moves the icon of the object name and changes nothing else of it; NoIconPosition sets it free. False
// with IoErr.
[[nodiscard]] bool PutIconPosition(std::string_view name, std::int32_t x, std::int32_t y);

// The icon for a new object, free to be placed: "ENVARC:Sys/def_<kind>.info", where that is missing or
// broken the one of the type, and last a built-in one. The first form asks by type alone. A kind is a
// plain name such as "picture" or "jpeg".
[[nodiscard]] DiskObject GetDefaultIcon(IconType type);
[[nodiscard]] DiskObject GetDefaultIcon(std::string_view kind, IconType type = IconType::Project);

// The value of the first tool type of that name, empty for a bare name. Names compare without
// regard to case; a disabled one, "(NAME=value)", is not found.
[[nodiscard]] std::optional<std::string> FindToolType(const DiskObject& object, std::string_view name);
// True when value is one of the values of a tool type text, which are separated by "|".
[[nodiscard]] bool MatchToolValue(std::string_view toolValue, std::string_view value);
// Gives the first tool type of that name this value, in its place and with its spelling, or appends a
// new one. An empty value makes a bare name. Disabled ones stay as they are.
void SetToolType(DiskObject& object, std::string_view name, std::string_view value);
// Removes all tool types of that name; false when there was none.
bool RemoveToolType(DiskObject& object, std::string_view name);

} // namespace icon
