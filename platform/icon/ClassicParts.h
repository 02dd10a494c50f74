// A classic icon file taken apart: where its parts lie and what its fixed records hold at which place.
// What the parts mean to users stands in DiskObject. Private to platform/icon.
#pragma once

#include "platform/icon/ByteReader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace icon {

// The fixed record; offsets in bytes.
inline constexpr std::uint16_t DiskMagic = 0xE310;
inline constexpr std::size_t RecordSize = 78;
inline constexpr std::size_t RecordWidth = 0x0C;       // word, as the height behind it
inline constexpr std::size_t RecordHeight = 0x0E;      // word
inline constexpr std::size_t RecordGadgetFlags = 0x10; // word
inline constexpr std::size_t RecordImage = 0x16;       // pointer: non-zero when the part is there
inline constexpr std::size_t RecordSecondImage = 0x1A; // pointer
inline constexpr std::size_t RecordUserData = 0x2C;    // the low byte is the revision
inline constexpr std::size_t RecordType = 0x30;        // byte
inline constexpr std::size_t RecordDefaultTool = 0x32; // pointer
inline constexpr std::size_t RecordToolTypes = 0x36;   // pointer
inline constexpr std::size_t RecordX = 0x3A;
inline constexpr std::size_t RecordY = 0x3E;
inline constexpr std::size_t RecordDrawer = 0x42;     // pointer
inline constexpr std::size_t RecordToolWindow = 0x46; // pointer
inline constexpr std::size_t RecordStack = 0x4A;

// Flags of the gadget.
inline constexpr std::uint16_t HasImageFlag = 4;      // the first image is there
inline constexpr std::uint16_t HighlightMask = 3;     // how a selected icon is shown
inline constexpr std::uint16_t HighlightBackfill = 1; // inverted, but for the ground around it
inline constexpr std::uint16_t HighlightImage = 2;    // by the second image

// The record of a drawer's window, and the one behind the texts.
inline constexpr std::size_t DrawerSize = 56;
inline constexpr std::size_t DrawerX = 0x30; // long, as the Y behind it
inline constexpr std::size_t DrawerY = 0x34;
inline constexpr std::size_t Drawer2Size = 6; // flags as a long, view mode as a word

// An image is a record and its planes.
inline constexpr std::size_t ImageSize = 20;
inline constexpr std::int32_t MaxPlanes = 8;

struct ImageHeader {
    std::int32_t Width, Height, Depth;
    bool HasData;
    std::uint8_t PlanePick, PlaneOnOff;
};

// The parts in their order, each as it stands in the file and empty when it is missing.
struct ClassicParts {
    std::string_view Record, Drawer, Image, SecondImage, DefaultTool, ToolTypes;
    // From here on the file may be cut off without harm to the object: a part that is not whole is
    // left in the rest, as are the colour pictures and whatever else stands behind.
    std::string_view ToolWindow, Drawer2, Rest;
};

// Nothing when the bytes are no classic icon, or end before the object is whole. The parts point into
// the file's bytes.
[[nodiscard]] std::optional<ClassicParts> SplitClassicIcon(std::string_view file);

[[nodiscard]] ImageHeader ReadImageHeader(ByteReader& reader);
// Bytes of a row of one plane.
[[nodiscard]] inline std::size_t PlaneRowBytes(std::int32_t width) {
    return (static_cast<std::size_t>(width) + 15) / 16 * 2;
}

[[nodiscard]] inline std::uint32_t LongAt(std::string_view bytes, std::size_t offset) {
    return ByteReader(bytes.substr(offset)).Long();
}
[[nodiscard]] inline std::uint16_t WordAt(std::string_view bytes, std::size_t offset) {
    return ByteReader(bytes.substr(offset)).Word();
}

// The text of a text part or of one tool type: a length, which counts the final NUL, and the bytes.
[[nodiscard]] std::string_view TextOf(std::string_view part);

// The tool types as they stand in the file, each with its length before it. All lines from the warning
// of a NewIcon on are image data; where some tool has taken the warning away, the image lines are
// known by their names.
struct ToolTypeRecords {
    std::vector<std::string_view> Shown, Hidden;
};
[[nodiscard]] ToolTypeRecords SplitToolTypes(std::string_view part);

// "IM1=" or "IM2=" begins it.
[[nodiscard]] bool IsImageLine(std::string_view text);

} // namespace icon
