// The shared pictures of rows and panes: what stands for an entry, a device or a place when its own icon is
// not asked for. Pictures are read when they are drawn for the first time; rows show them as they are or take
// a copy (SAK_CopyImage).
#pragma once

#include "platform/intuition/Images.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace solvane {

// Pictures of the size of a line of text, in the order of the table in the source.
enum class ListImage : std::uint8_t {
    Drawer,
    DrawerWithIcon, // its ".info" file is there
    File,
    FileWithIcon,
    DrawerLink,
    FileLink,
    Disk,
    Assign,
    Home,
    Desktop,
    Computer,
    Bookmark,
    Favorite,
    FTPSite,
    Last = FTPSite
};

// Pictures of the Tiles style, each in four sizes.
enum class TileImage : std::uint8_t {
    Drawer,
    DrawerWithIcon,
    File,
    FileWithIcon,
    DrawerLink,
    FileLink,
    Assign,
    Last = Assign
};
inline constexpr std::array<int, 4> TileImageSizes{256, 128, 64, 32}; // layout units

inline constexpr std::size_t DeviceImageCount = 21; // types 0 to 19, then the unknown one

struct ImageObjects {
    std::array<intuition::ImageId, static_cast<std::size_t>(ListImage::Last) + 1> Lists{};
    std::array<std::array<intuition::ImageId, TileImageSizes.size()>,
               static_cast<std::size_t>(TileImage::Last) + 1>
        Tiles{};
    std::array<intuition::ImageId, DeviceImageCount> Devices{};
};

// Filled by LoadBitMapImages; all None before it and after DisposeBitMapImages, which is nothing to draw.
extern ImageObjects ImgObjects;

// Obtains the pictures of "PROGDIR:Images/". A file that is missing is no failure, it shows as nothing; false
// when a picture cannot be obtained at all.
[[nodiscard]] bool LoadBitMapImages();
// Gives the uses back; copies live on.
void DisposeBitMapImages();

// The side of the pictures of menus and of the toolbar, in layout units, by the setting of either.
[[nodiscard]] int ToolImageSide(std::int32_t setting);

enum class ToolImageForm : std::uint8_t { Plain, Selected, Ghosted };
// Where a picture of buttons and menu items lies; empty for one without a name.
[[nodiscard]] std::string ToolImagePath(std::string_view name, int side,
                                        ToolImageForm form = ToolImageForm::Plain);

// Where they lie, for those that are looked up only when a row is shown.
[[nodiscard]] std::string ListImagePath(ListImage image);
[[nodiscard]] std::string TileImagePath(TileImage image, int size);

[[nodiscard]] intuition::ImageId ListImageObject(ListImage image);
// For a size that there is none of: that of 64.
[[nodiscard]] intuition::ImageId TileImageObject(TileImage image, int size);
// By the type of the device; a type above 19 has the picture of an unknown one.
[[nodiscard]] intuition::ImageId DeviceImageObject(std::uint32_t deviceType);

} // namespace solvane
